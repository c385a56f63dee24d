#pragma once

// The program's start: data folder, texts, single instance, preferences, the main
// frame and its first window, in this order.
namespace AppInit {
int Main(int argc, char *argv[]);
}
