#include "common/AppGlobals.h"

AppGlobals& Globals()
{
    static AppGlobals globals;
    return globals;
}
