#include "core/records/fileoutcome.h"

#include "core/base/uitexts.h"

QString FileOutcome::message() const
{
    if (!ok())
        return uiText(problem == Problem::CannotWrite ? 2001 : 2002).arg(path, error);
    if (wasMovedAside())
        return uiText(2000).arg(path, movedAsidePath);
    return {};
}

FileOutcome FileOutcome::failed(const QString &path, Problem problem, const QString &error)
{
    FileOutcome outcome;
    outcome.path = path;
    outcome.problem = problem;
    outcome.error = error;
    return outcome;
}

QString FileOutcome::cannotMoveAsideReason()
{
    return uiText(2080);
}

QString FileOutcome::invalidNameReason(const QString &name)
{
    return uiText(2081).arg(name);
}
