// The serial number of an Ogg file, which its writer draws by lot.
#pragma once

namespace karaoke {

/// Gives every page the same serial number, whatever it had, so that the same sound gives the same file.
/// @param descriptor  a file with one stream, open for reading and writing
/// @throws host::HostError  when it cannot be read or written
void setOggSerial(int descriptor);

} // namespace karaoke
