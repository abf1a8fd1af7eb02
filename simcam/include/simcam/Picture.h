/// @file
/// The picture of the simulated camera: a street, seen through a lens and a sensor with the driver's values.
#pragma once

#include "simcam/Export.h"
#include "simcam/PictureParameters.h"

#include <memory>
#include <string>
#include <vector>

namespace simcam {

/// A picture: rows from the top, pixels from the left, each of red, green and blue in a byte.
struct Picture {
    int width = 0;                   ///< pixels
    int height = 0;                  ///< pixels
    std::vector<unsigned char> rgb;  ///< width * height * 3 bytes
};

/// Draws what one channel of a simulated camera sees.
///
///     simcam::PictureRenderer renderer;
///     simcam::PictureParameters parameters;
///     simcam::Picture picture;
///     std::vector<unsigned char> jpeg;
///     if (simcam::takePictureParameters(camera.driver(), camera.scene(), 0, false, 1, parameters)) {
///         renderer.render(parameters, picture);
///         simcam::encodeJpeg(picture, 80, jpeg);
///     }
///
/// The same parameters give the same bytes, on every machine: all arithmetic is that of integers. Two parameters look
/// back at what this renderer drew before: white balance mode 5 (locked) keeps the gains that the automatic mode last
/// found, and freeze keeps the last picture. Automatic exposure and automatic white balance are always settled.
///
/// Threads: one at a time for each renderer; renderers share nothing. Never blocks. Not copyable.
class SIMCAM_API PictureRenderer {
public:
    /// A renderer that has drawn nothing yet.
    /// @param p_nWidth   pixels, 32 to 1920; taken to the nearer end
    /// @param p_nHeight  pixels, 18 to 1080; taken to the nearer end
    explicit PictureRenderer(int p_nWidth = 640, int p_nHeight = 360);
    ~PictureRenderer();
    PictureRenderer(const PictureRenderer&) = delete;
    PictureRenderer& operator=(const PictureRenderer&) = delete;

    /// Draws a picture.
    /// @param p_stParameters  what it depends on; values outside their ranges are taken to the nearer end
    /// @param[out] p_stPicture  the picture; its memory is used again
    void render(const PictureParameters& p_stParameters, Picture& p_stPicture);

private:
    struct State;
    std::unique_ptr<State> m_pState;
};

/// Encodes a picture as a JPEG file.
///
/// Threads: any. Never blocks. An error of the encoder ends the call, not the process.
/// @param p_stPicture    the picture
/// @param p_nQuality     1 to 100
/// @param[out] p_vecJpeg the file; empty after a failure
/// @param[out] p_pError  when not null and the call failed: why
/// @return false for a picture whose size does not fit its bytes, a quality outside its range, or an error of the encoder
SIMCAM_API bool encodeJpeg(const Picture& p_stPicture, int p_nQuality, std::vector<unsigned char>& p_vecJpeg,
                           std::string* p_pError = nullptr);

}  // namespace simcam
