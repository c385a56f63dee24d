#include "app/tool/toolcontext.h"

#include <algorithm>

int ToolContext::fail(Exit code, const QString &message) const
{
    err << "vantrell-tool: " << message << Qt::endl;
    return code;
}

bool ToolContext::takeOption(const QString &name, QString *value)
{
    const qsizetype at = arguments.indexOf(name);
    if (at < 0 || at + 1 >= arguments.size())
        return false;
    *value = arguments.at(at + 1);
    arguments.remove(at, 2);
    return true;
}

bool ToolContext::takeFlag(const QString &name)
{
    return arguments.removeAll(name) > 0;
}

QString ToolContext::escaped(const QString &text)
{
    const auto special
        = [](QChar c) { return c == u'\\' || c == u'\r' || c == u'\n' || c == u'\t'; };
    if (std::none_of(text.cbegin(), text.cend(), special))
        return text;
    QString out;
    out.reserve(text.size() + 8);
    for (const QChar c : text) {
        if (c == u'\\')
            out += QStringLiteral("\\\\");
        else if (c == u'\r')
            out += QStringLiteral("\\r");
        else if (c == u'\n')
            out += QStringLiteral("\\n");
        else if (c == u'\t')
            out += QStringLiteral("\\t");
        else
            out += c;
    }
    return out;
}
