#include "app/tool/toolcontext.h"
#include "core/base/uitexts.h"
#include "core/prefs/prefer.h"

int runPrefsCommand(ToolContext &context)
{
    const QString path = context.dataFolder + QStringLiteral("/Pref.vtp");
    const bool showPasswords = context.takeFlag(QStringLiteral("--show-passwords"));
    const QString verb = context.arguments.value(0);
    if (verb != u"show" && verb != u"set")
        return context.fail(
            ToolContext::UsageError, QStringLiteral("usage: prefs show | prefs set NAME VALUE"));
    if (verb == u"show" && context.arguments.size() != 1)
        return context.fail(
            ToolContext::UsageError, QStringLiteral("usage: prefs show [--show-passwords]"));
    if (verb == u"set" && context.arguments.size() != 3)
        return context.fail(ToolContext::UsageError, QStringLiteral("usage: prefs set NAME VALUE"));

    Prefer prefs;
    switch (prefs.LoadPref(path)) {
    case Prefer::LoadResult::OldFormat:
        return context.fail(ToolContext::DataError,
            uiText(1141) + QStringLiteral(" \"") + context.dataFolder + u'"');
    case Prefer::LoadResult::ReplacedInvalid:
        context.err << "vantrell-tool: " << path << " was invalid and has been moved to "
                    << prefs.movedAsidePath() << "; defaults are in use." << Qt::endl;
        break;
    default:
        break;
    }

    if (verb == u"show") {
        for (const Prefer::Field &field : Prefer::fields()) {
            const bool hidden = field.kind == Prefer::Field::Kind::Password && !showPasswords;
            context.out << field.name << '='
                        << (hidden ? QStringLiteral("***") : prefs.valueText(field)) << '\n';
        }
        context.out.flush();
        return ToolContext::Success;
    }

    const Prefer::Field *field = Prefer::field(context.arguments.at(1));
    if (!field)
        return context.fail(ToolContext::UsageError,
            QStringLiteral("unknown preference %1").arg(context.arguments.at(1)));
    if (!prefs.setValueText(*field, context.arguments.at(2)))
        return context.fail(ToolContext::UsageError,
            QStringLiteral("%1 takes a whole number from -32768 to 32767")
                .arg(context.arguments.at(1)));
    if (!prefs.SavePref(path))
        return context.fail(ToolContext::DataError,
            QStringLiteral("cannot write %1: %2").arg(path, prefs.lastError()));
    for (int account : prefs.unstorablePasswords())
        context.err << "vantrell-tool: the password of mail account " << account
                    << " holds characters the preferences file cannot store; it was not saved."
                    << Qt::endl;
    return ToolContext::Success;
}
