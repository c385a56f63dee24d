#include "toolcontext.h"

int runFeedCommand(ToolContext &context)
{
    return context.fail(ToolContext::UsageError, QStringLiteral("the feed command is not available yet"));
}
