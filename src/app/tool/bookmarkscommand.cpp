#include "toolcontext.h"

int runBookmarksCommand(ToolContext &context)
{
    return context.fail(ToolContext::UsageError, QStringLiteral("the bookmarks command is not available yet"));
}
