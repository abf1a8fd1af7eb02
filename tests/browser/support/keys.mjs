// Keys of parameters that the stories use; all are offered by the camera of rootfs/.
export const kBrightness = 34;
export const kContrast = 2353;
export const kSaturation = 2337;
export const kMirror = 2384;
// Two switches, of which each takes the other out of use while it is on.
export const kHighlights = 112;
export const kBacklight = 128;
// The window of a scheme in its numbers; shown while the camera switches by the time of day.
export const kStartHour = 8001;
export const kEndHour = 8003;
export const kEndMinute = 8004;
// A mode of the exposure, by which the driver decides on the choices of the longest exposure.
export const kWideRange = 2368;
export const kLongestExposure = 49;
export const kDefog = 2400; // a switch
export const kFocusOnce = 1539; // a button
export const kMeteringArea = 96; // has choices
