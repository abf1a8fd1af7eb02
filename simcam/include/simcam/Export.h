// Marks what libsimcam.so defines and its users import.
#pragma once

#define SIMCAM_API __attribute__((visibility("default")))
