/// @file
/// The host's video module as the sensor library sees it.
#pragma once

#include "platform/Types.h"

#include <vector>

/// One stream of a channel.
struct AVStreamParam {
    int nStreamId = 0;     ///< 0 main stream, 1 sub stream, ...
    int nFrameRate = 0;    ///< frames per second
    int nEncoderType = 0;  ///< 0 main profile encoder, 1 the secondary encoder
    int nVideoWidth = 0;   ///< pixels
    int nVideoHeight = 0;  ///< pixels
};

/// How the frame rate and wide dynamic range limit each other on a channel.
struct LimitedFramesWDRModeParam {
    int nLimitFramesModeId = -1;  ///< the chosen mode; 0 is the mode of full frame rate
    int nWDRLimit = 0;            ///< 1: this mode does not allow wide dynamic range
};

/// The host's video module as the sensor library sees it. The host implements it and hands it in; the library never
/// frees it. It must outlive every controller that knows it.
///
/// Threads: the library calls it from the host's threads and from each controller's own thread, without a lock of its
/// own; an implementation must be safe for that. It must not call back into the controller that calls it.
class VideoStreamModule {
public:
    /// The host destroys its module; the library never does.
    virtual ~VideoStreamModule() = default;

    /// A parameter of the channel has changed, or is about to.
    /// @param p_nChannel  from 1
    /// @param p_nKey      the parameter
    /// @param p_nValue    its value
    /// @return 0 on success
    virtual int notifyChange(int p_nChannel, int p_nKey, int p_nValue) = 0;

    /// Whether the image pipeline is running.
    /// @return 0 once it is, anything else before
    virtual int get2ARunRet() = 0;

    /// The streams of a channel.
    /// @param p_nChannel          from 1
    /// @param[out] p_vecStreams   set to the streams
    /// @return true on success
    virtual bool getAVStreamParam(int p_nChannel, std::vector<AVStreamParam>& p_vecStreams) = 0;

    /// The limits of a channel.
    /// @param p_nChannel      from 1
    /// @param[out] p_stParam  filled in
    /// @return true on success
    virtual bool getLimitedFramesWDRModeParam(int p_nChannel, LimitedFramesWDRModeParam& p_stParam) = 0;
};
