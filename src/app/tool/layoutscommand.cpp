#include "toolcontext.h"

int runLayoutsCommand(ToolContext &context)
{
    return context.fail(ToolContext::UsageError, QStringLiteral("the layouts command is not available yet"));
}
