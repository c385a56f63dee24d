#pragma once

#include <QString>

#include <optional>

// What the settings dialog accepts for a preference, in the program's own words. A
// refused value keeps the dialog open; a warned one is stored as the user wrote it.
namespace PrefRules {

struct Check
{
    enum class Level { Fine, Warning, Refused };
    Level level = Level::Fine;
    QString message;

    static Check warning(const QString &message) { return {Level::Warning, message}; }
    static Check refused(const QString &message) { return {Level::Refused, message}; }
};

struct Range
{
    qint16 minimum;
    qint16 maximum;
};

// The numbers the dialog offers for a number preference, when it limits them.
std::optional<Range> rangeOf(const QString &field);

// A page address: one with a scheme ("https://…", "about:blank") or an absolute path.
Check checkAddress(const QString &text);
// A search address: an address in which "%s" stands for the search term.
Check checkSearchTemplate(const QString &text);
// A file the program reads later: an empty field is fine, a missing file is warned of.
Check checkFile(const QString &path);
// The program of the mail program's command line, looked up as the shell would.
Check checkProgram(const QString &program);
// A mail server in one of the forms the mail check knows; says when the password
// would travel in clear. A mailbox checked regularly needs one.
Check checkMailServer(const QString &text, bool checkedRegularly);
// The layout file of the start option; the option needs one when it is chosen.
Check checkLayoutFile(const QString &path, bool chosen);

} // namespace PrefRules
