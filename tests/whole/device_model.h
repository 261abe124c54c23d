// What a device makes of the messages it received, as far as its channels' state goes.
#pragma once

#include <string>
#include <vector>

#include "tests/support/machine.h"

/// Where two outputs are in different states after a log, one line for each value that differs: program
/// with its bank, controllers, bend, pressure, registered and non-registered parameters.
std::vector<std::string> differences(const std::vector<Sent>& log, int output, int other);
