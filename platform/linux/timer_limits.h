// The range of periods that the timer accepts.
#pragma once

/// Both in milliseconds.
struct TimerLimits {
    unsigned shortest;
    unsigned longest;

    bool contain(unsigned period) const {
        return period >= shortest && period <= longest;
    }
};

/// The limits in force; a test may have narrowed or widened them.
TimerLimits timerLimits();
