#include "app/vantrell/appinit.h"

int main(int argc, char *argv[])
{
    return AppInit::Main(argc, argv);
}
