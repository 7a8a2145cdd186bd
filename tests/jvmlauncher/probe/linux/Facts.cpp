#include "jvmlauncher/probe/Facts.h"

std::vector<std::string> Facts(int count, char** arguments) { return {arguments + 1, arguments + count}; }
