#pragma once

// Only what platform/macos uses, with the values of Apple's libpthread.

enum qos_class_t : unsigned int { QOS_CLASS_USER_INITIATED = 0x19, QOS_CLASS_UTILITY = 0x11 };
