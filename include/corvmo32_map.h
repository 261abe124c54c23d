/** @file
 * The channel map: the state that a song has given the 16 channels before a tick.
 *
 * Built by mm_CreateMap and at every jump between play ranges, sent by mm_SendMap and at every jump,
 * read through mm_GetMap. Every byte is 0xFF where the song set nothing. Before the first build, and
 * after mm_Close, the map holds zeros.
 */
#ifndef CORVMO32_MAP_H
#define CORVMO32_MAP_H

#include <stdint.h>

/** Marks a map slot that the song did not set. */
#define MMMAP_NONE8 0xFFu
/** Marks a map time signature that the song did not set. */
#define MMMAP_NONE16 0xFFFFu
/** Marks a map tempo that the song did not set. */
#define MMMAP_NONE32 0xFFFFFFFFu

/** Slots of a channel's record. Where two slots follow each other for one controller, the second is
 *  that controller's fine half. The slots that are not named here never hold a value. */
enum {
    MMSLOT_POLY_KEY = 0,      /**< polyphonic key pressure: key; recorded, not sent */
    MMSLOT_POLY_PRESSURE = 1, /**< its pressure; recorded, not sent */
    MMSLOT_PROGRAM = 2,
    MMSLOT_CHANNEL_PRESSURE = 3,
    MMSLOT_BEND_LOW = 4, /**< pitch bend, first data byte */
    MMSLOT_BEND_HIGH = 5,
    MMSLOT_BANK_MSB = 6, /**< controller 0 */
    MMSLOT_BANK_LSB = 7, /**< controller 32 */
    MMSLOT_MODULATION = 8,
    MMSLOT_BREATH = 10,
    MMSLOT_FOOT = 12,
    MMSLOT_PORTAMENTO_TIME = 14,
    MMSLOT_VOLUME = 16,
    MMSLOT_VOLUME_FINE = 17, /**< recorded, not sent */
    MMSLOT_BALANCE = 18,     /**< controller 8 */
    MMSLOT_PAN = 20,         /**< controller 10 */
    MMSLOT_PAN_FINE = 21,    /**< recorded, not sent */
    MMSLOT_EXPRESSION = 22,
    MMSLOT_EFFECT1 = 24,  /**< controller 12 */
    MMSLOT_EFFECT2 = 26,  /**< controller 13 */
    MMSLOT_GENERAL1 = 28, /**< controllers 16 to 19 in slots 28 to 31 */
    MMSLOT_SUSTAIN = 32,  /**< controllers 64 to 84 in slots 32 to 52; 70 to 83 not sent */
    MMSLOT_PORTAMENTO_CONTROL = 52, /**< controller 84 */
    MMSLOT_REVERB = 53,             /**< controller 91 */
    MMSLOT_TREMOLO = 54,            /**< controller 92 */
    MMSLOT_CHORUS = 55,             /**< controller 93 */
    MMSLOT_DETUNE = 56,             /**< controller 94 */
    MMSLOT_PHASER = 57,             /**< controller 95 */
    MMSLOT_RPN_BEND_RANGE = 58,     /**< registered parameter 0/0 */
    MMSLOT_NEVER_SET = 59,          /**< holds 0xFF in every map that was built */
    MMSLOT_RPN_FINE_TUNING = 60,    /**< registered parameter 0/1 */
    MMSLOT_RPN_COARSE_TUNING = 62,  /**< registered parameter 0/2 */
    MMSLOT_NRPN_VIBRATO_RATE = 64,  /**< non-registered parameter 1/8 */
    MMSLOT_NRPN_VIBRATO_DEPTH = 66, /**< 1/9 */
    MMSLOT_NRPN_VIBRATO_DELAY = 68, /**< 1/10 */
    MMSLOT_NRPN_CUTOFF = 70,        /**< 1/32 */
    MMSLOT_NRPN_RESONANCE = 72,     /**< 1/33 */
    MMSLOT_NRPN_ATTACK = 74,        /**< 1/99 */
    MMSLOT_NRPN_DECAY = 76,         /**< 1/100 */
    MMSLOT_NRPN_RELEASE = 78,       /**< 1/102 */
    MMMAP_SLOTS = 90
};

#pragma pack(push, 1)

/** One song channel's part of the map: the last value of each message before the map's tick. */
typedef struct MMMAPCHANNEL {
    uint8_t slot[MMMAP_SLOTS]; /**< data bytes, indexed by MMSLOT_...; 0xFF = not set by the song */
} MMMAPCHANNEL;

/** The channel map of one player. Written by the engine only. */
typedef struct MMMAP {
    uint32_t tempo;       /**< microseconds per quarter note as in the file; 0xFFFFFFFF = none */
    uint16_t beatsPerBar; /**< numerator of the time signature in force; 0xFFFF = none */
    uint16_t beatUnit;    /**< its note value as a number (4 = quarter note) */
    uint32_t timeSigTick; /**< tick of that time signature */
    MMMAPCHANNEL channel[16]; /**< by song channel */
} MMMAP;

#pragma pack(pop)

#endif
