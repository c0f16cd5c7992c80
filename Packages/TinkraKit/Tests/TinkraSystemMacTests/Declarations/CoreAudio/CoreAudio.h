#pragma once

// Written for the checks from public documentation: what our sources use of this framework, and no more.

#include <cstdint>

using UInt32 = std::uint32_t;
using SInt32 = std::int32_t;
using Float32 = float;
using Boolean = unsigned char;
using OSStatus = SInt32;

using AudioObjectID = UInt32;
using AudioDeviceID = AudioObjectID;
using AudioObjectPropertySelector = UInt32;
using AudioObjectPropertyScope = UInt32;
using AudioObjectPropertyElement = UInt32;

struct AudioObjectPropertyAddress {
    AudioObjectPropertySelector mSelector;
    AudioObjectPropertyScope mScope;
    AudioObjectPropertyElement mElement;
};

enum : AudioObjectID {
    kAudioObjectUnknown = 0,
    kAudioObjectSystemObject = 1,
};

enum : AudioObjectPropertyScope {
    kAudioObjectPropertyScopeGlobal = 'glob',
    kAudioDevicePropertyScopeOutput = 'outp',
};

enum : AudioObjectPropertyElement {
    kAudioObjectPropertyElementMain = 0,
};

enum : AudioObjectPropertySelector {
    kAudioHardwarePropertyDefaultOutputDevice = 'dOut',
    kAudioDevicePropertyVolumeScalar = 'volm',
    kAudioDevicePropertyMute = 'mute',
};

enum : OSStatus {
    kAudioHardwareNoError = 0,
};

#pragma clang assume_nonnull begin

extern "C" {
Boolean AudioObjectHasProperty(AudioObjectID object, const AudioObjectPropertyAddress* address);
OSStatus AudioObjectGetPropertyData(AudioObjectID object, const AudioObjectPropertyAddress* address,
    UInt32 qualifierSize, const void* _Nullable qualifier, UInt32* ioSize, void* data);
OSStatus AudioObjectSetPropertyData(AudioObjectID object, const AudioObjectPropertyAddress* address,
    UInt32 qualifierSize, const void* _Nullable qualifier, UInt32 size, const void* data);
}

#pragma clang assume_nonnull end
