#include "core/base/commandline.h"

#include <QDir>
#include <QFileInfo>

namespace CommandLine {

int CountOf(const QString &text, const QString &pattern)
{
    if (pattern.isEmpty())
        return 0;
    int count = 0;
    for (qsizetype at = text.indexOf(pattern); at >= 0;
         at = text.indexOf(pattern, at + pattern.size()))
        ++count;
    return count;
}

static bool namesLocalPath(const QString &argument)
{
    QString path = argument;
    if (path.size() >= 2 && path.startsWith(u'"') && path.endsWith(u'"'))
        path = path.mid(1, path.size() - 2);
    if (path.isEmpty() || path.contains(u':'))
        return false; // an address with a scheme is counted by its colon already
    return QDir::isAbsolutePath(path) || QFileInfo::exists(path);
}

int markerSum(const QString &rawLine, const QStringList &arguments)
{
    int sum = CountOf(rawLine, QStringLiteral(":")) + CountOf(rawLine, QStringLiteral("\\\\"));
    for (const QString &argument : arguments) {
        if (namesLocalPath(argument))
            ++sum;
    }
    return sum;
}

int markerSum(const QString &rawLine)
{
    QStringList arguments;
    // Split as the raw line was joined: quoted runs stay whole.
    QString current;
    bool quoted = false;
    for (const QChar c : rawLine) {
        if (c == u'"')
            quoted = !quoted;
        if (c == u' ' && !quoted) {
            if (!current.isEmpty())
                arguments.append(current);
            current.clear();
        } else {
            current.append(c);
        }
    }
    if (!current.isEmpty())
        arguments.append(current);
    return markerSum(rawLine, arguments);
}

QString FirstArgument(const QString &rawLine, int markerSum)
{
    if (markerSum - 1 == 0)
        return rawLine;
    if (rawLine.startsWith(u'"')) {
        const qsizetype close = rawLine.indexOf(u'"', 1);
        return close < 0 ? rawLine : rawLine.mid(1, close - 1);
    }
    const qsizetype blank = rawLine.indexOf(u' ');
    return blank < 0 ? rawLine : rawLine.left(blank);
}

QString rawLine(const QStringList &arguments)
{
    QStringList parts;
    for (const QString &argument : arguments)
        parts.append(argument.contains(u' ') ? u'"' + argument + u'"' : argument);
    return parts.join(u' ');
}

QString addressToOpen(const QString &line)
{
    const int sum = markerSum(line);
    QString address = sum > 1 ? FirstArgument(line, sum) : line;
    if (address.size() >= 2 && address.startsWith(u'"') && address.endsWith(u'"'))
        address = address.mid(1, address.size() - 2);
    return address;
}

} // namespace CommandLine
