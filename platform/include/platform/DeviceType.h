/// @file
/// The kinds of device that the machine information names.
#pragma once

#include "platform/Types.h"

/// The kinds of device. The numbers are frozen: they stand in every camera's machineinfo.ini. Do not change them.
struct DeviceType {
    /// What "devicetype" of the machine information says.
    enum Id : u32 {
        IPCAMERA = 1,                            ///< box, bullet or turret camera
        IPDOME = 4,                              ///< pan-tilt-zoom dome
        LPR = 8,                                 ///< plate recognition
        FACE_DETECT = 9,                         ///< face detection
        VEHICLE_DETECT = 11,                     ///< vehicle detection
        THERMAL_DEVICE = 13,                     ///< one thermal sensor, which is always channel 2
        THERMAL_DOUBLE_SENSOR_DEVICE = 14,       ///< visible channel 1, thermal channel 2
        AIMULTI_OBJECT_DETECT = 15,              ///< several kinds of object
        IPP = 16,                                ///< panoramic camera of several sensors
        HUMAN_TEMPERATURE = 17,                  ///< body temperature, thermal channel 2
        FISHEYE = 18,                            ///< fisheye
        THERMAL_DOUBLE_SENSOR_DOME_DEVICE = 19,  ///< dome with a thermal channel 2
        DOMECORE = 20,                           ///< the camera module of a dome
        DOMECORE_THERMAL_DEVICE = 104,           ///< the thermal camera module of a dome
    };
};
