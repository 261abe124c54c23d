// Hands a test's log to the check that hosts use.
#include "tests/support/sounding.h"

#include "shared/sounding.h"

std::vector<std::string> stillSounding(const std::vector<Sent>& log) {
    host::Sounding sounding;
    for (const Sent& sent : log) {
        sounding.take(sent.output, sent.bytes);
    }
    return sounding.list();
}
