#pragma once

// Only what platform/macos uses, with the values of Apple's header for macOS. Implemented by the fakes.

enum OSThermalPressureLevel {
    kOSThermalPressureLevelNominal = 0,
    kOSThermalPressureLevelModerate,
    kOSThermalPressureLevelHeavy,
    kOSThermalPressureLevelTrapping,
    kOSThermalPressureLevelSleeping
};

extern "C" const char* const kOSThermalNotificationPressureLevelName;
