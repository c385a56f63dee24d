// Must not compile as part of the headless core: it reaches for a widget header
// through the include path every Qt module shares.
#include <QtWidgets/QWidget>

int probe()
{
    return 0;
}
