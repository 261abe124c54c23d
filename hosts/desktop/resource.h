/* Numbers of commands, controls and resources. Read by the resource compiler too. */
#ifndef KARAOKE_RESOURCE_H
#define KARAOKE_RESOURCE_H

#define IDI_KARAOKE 1
#define IDR_MENU 2
#define IDR_KEYS 3
#define IDD_OUTPUTS 4

#define ID_WORDS 100
#define ID_POSITION 101
#define ID_PLAYLIST 102
#define ID_MIXER 103
#define ID_MESSAGE 104
#define ID_TEMPO 110
#define ID_TEMPO_SPIN 111
#define ID_TEMPO_LABEL 112
#define ID_KEY 113
#define ID_KEY_SPIN 114
#define ID_KEY_LABEL 115

#define ID_OPEN 200
#define ID_ADD 201
#define ID_REMOVE 202
#define ID_CLEAR 203
#define ID_MOVE_UP 204
#define ID_MOVE_DOWN 205
#define ID_PLAY_CHOSEN 206
#define ID_PLAY_SECOND 207
#define ID_STOP_SECOND 208
#define ID_OUTPUTS 209
#define ID_EXIT 210

#define ID_PLAY 220
#define ID_STOP 221
#define ID_REWIND 222
#define ID_PREVIOUS 223
#define ID_NEXT 224
#define ID_BACK 225
#define ID_FORWARD 226
#define ID_LOOP_BEGIN 227
#define ID_LOOP_END 228
#define ID_LOOP_CLEAR 229
#define ID_FADE 230
#define ID_METRONOME 231
#define ID_PANIC 232
#define ID_SLOWER 233
#define ID_FASTER 234
#define ID_KEY_DOWN 235
#define ID_KEY_UP 236
#define ID_AS_WRITTEN 237

#define ID_SHOW_PLAYLIST 250
#define ID_SHOW_MIXER 251
#define ID_FULL_SCREEN 252
#define ID_WORDS_WINDOW 253
#define ID_LEAVE_FULL_SCREEN 254
#define ID_MENU_KEYS 255
#define ID_ABOUT 256

#define ID_ENCODING_FIRST 300
#define ID_ENCODING_LAST 311

#define ID_FIRST_OUTPUT 400
#define ID_SECOND_OUTPUT 401

#endif
