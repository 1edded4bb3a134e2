// SPDX-License-Identifier: GPL-3.0-or-later
#include "TLApplication.h"

int main(int argc, char** argv) { return NSApplicationMain(argc, argv); }
