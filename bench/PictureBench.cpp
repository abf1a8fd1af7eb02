// Pictures of the simulated camera, 640 x 360: items a second are frames a second on one core.
#include "simcam/Picture.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

void drawFrames(benchmark::State& p_objState, simcam::PictureParameters p_st) {
    simcam::PictureRenderer objRenderer;
    simcam::Picture stPicture;
    for (auto _ : p_objState) {
        objRenderer.render(p_st, stPicture);
        p_st.milliseconds += 40;
    }
    p_objState.SetItemsProcessed(p_objState.iterations());
}

void pictureByDay(benchmark::State& p_objState) {
    drawFrames(p_objState, {});
}
BENCHMARK(pictureByDay)->Unit(benchmark::kMillisecond);

void pictureAtNight(benchmark::State& p_objState) {
    simcam::PictureParameters st;
    st.milliLux = 50;
    st.night = 1;
    drawFrames(p_objState, st);
}
BENCHMARK(pictureAtNight)->Unit(benchmark::kMillisecond);

// Every stage at work, in colour.
void pictureWithEverything(benchmark::State& p_objState) {
    simcam::PictureParameters st;
    st.milliLux = 5000;
    st.fogPercent = 40;
    st.defog = 1;
    st.wideDynamicRange = 1;
    st.highlight = 1;
    st.whiteLight = 1;
    st.whiteLightMode = 2;
    st.focusPosition = 3000;
    st.digitalZoom = 1;
    st.noise2dMode = 1;
    st.noise3dMode = 1;
    st.noise3dStrength = 100;
    drawFrames(p_objState, st);
}
BENCHMARK(pictureWithEverything)->Unit(benchmark::kMillisecond);

void jpegOfAPicture(benchmark::State& p_objState) {
    simcam::PictureRenderer objRenderer;
    simcam::Picture stPicture;
    std::vector<unsigned char> vecJpeg;
    objRenderer.render({}, stPicture);
    for (auto _ : p_objState) {
        benchmark::DoNotOptimize(simcam::encodeJpeg(stPicture, 80, vecJpeg));
    }
    p_objState.SetItemsProcessed(p_objState.iterations());
}
BENCHMARK(jpegOfAPicture)->Unit(benchmark::kMillisecond);

}  // namespace
