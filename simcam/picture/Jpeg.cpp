#include "simcam/Picture.h"

#include <turbojpeg.h>

#include <memory>

namespace simcam {
namespace {

struct HandleCloser {
    void operator()(void* p_pHandle) const { tjDestroy(p_pHandle); }
};

bool isWhole(const Picture& p_st) {
    constexpr int kLongest = 65500;  // of a side, in JPEG
    return p_st.width > 0 && p_st.height > 0 && p_st.width <= kLongest && p_st.height <= kLongest &&
           p_st.rgb.size() / 3 / static_cast<std::size_t>(p_st.width) == static_cast<std::size_t>(p_st.height) &&
           0 == p_st.rgb.size() % (3 * static_cast<std::size_t>(p_st.width));
}

bool failed(std::vector<unsigned char>& p_vecJpeg, std::string* p_pError, const char* p_szWhy) {
    p_vecJpeg.clear();
    if (nullptr != p_pError) {
        *p_pError = p_szWhy;
    }
    return false;
}

}  // namespace

bool encodeJpeg(const Picture& p_stPicture, int p_nQuality, std::vector<unsigned char>& p_vecJpeg,
                std::string* p_pError) {
    if (!isWhole(p_stPicture)) {
        return failed(p_vecJpeg, p_pError, "the size of the picture does not fit its bytes");
    }
    if (p_nQuality < 1 || p_nQuality > 100) {
        return failed(p_vecJpeg, p_pError, "the quality is not within 1 to 100");
    }
    const std::unique_ptr<void, HandleCloser> pEncoder(tjInitCompress());
    if (nullptr == pEncoder) {
        return failed(p_vecJpeg, p_pError, tjGetErrorStr2(nullptr));
    }
    // As large as it can become, so that the encoder needs no memory of its own for it.
    unsigned long nSize = tjBufSize(p_stPicture.width, p_stPicture.height, TJSAMP_420);
    p_vecJpeg.resize(nSize);
    unsigned char* pJpeg = p_vecJpeg.data();
    if (0 != tjCompress2(pEncoder.get(), p_stPicture.rgb.data(), p_stPicture.width, 0, p_stPicture.height, TJPF_RGB,
                         &pJpeg, &nSize, TJSAMP_420, p_nQuality, TJFLAG_NOREALLOC | TJFLAG_ACCURATEDCT)) {
        return failed(p_vecJpeg, p_pError, tjGetErrorStr2(pEncoder.get()));
    }
    p_vecJpeg.resize(nSize);
    return true;
}

}  // namespace simcam
