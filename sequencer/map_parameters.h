// The registered and non-registered parameters that the channel map knows, in the order in which they are
// sent.
#pragma once

#include <cstdint>

#include "corvmo32_map.h"

/// A parameter number's low byte and the map slot of its value.
struct MapParameter {
    std::uint8_t low;
    std::uint8_t slot;
};

constexpr std::uint8_t kRegisteredHighByte = 0;
constexpr std::uint8_t kNonRegisteredHighByte = 1;

constexpr MapParameter kRegisteredParameters[] = {
    {0, MMSLOT_RPN_BEND_RANGE}, {1, MMSLOT_RPN_FINE_TUNING}, {2, MMSLOT_RPN_COARSE_TUNING}};

constexpr MapParameter kNonRegisteredParameters[] = {
    {8, MMSLOT_NRPN_VIBRATO_RATE}, {9, MMSLOT_NRPN_VIBRATO_DEPTH}, {10, MMSLOT_NRPN_VIBRATO_DELAY},
    {32, MMSLOT_NRPN_CUTOFF},      {33, MMSLOT_NRPN_RESONANCE},    {99, MMSLOT_NRPN_ATTACK},
    {100, MMSLOT_NRPN_DECAY},      {102, MMSLOT_NRPN_RELEASE}};
