#include "Platform/MediaPlayer/StereoResampler.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/frame.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

#include <algorithm>
#include <array>

namespace tamsy {
namespace {

static_assert(sizeof(StereoFrame) == 2 * sizeof(float));

SwrContext* makeContext(const AVFrame& frame) {
    AVChannelLayout stereo = AV_CHANNEL_LAYOUT_STEREO;
    AVChannelLayout layout = frame.ch_layout;
    if (layout.order == AV_CHANNEL_ORDER_UNSPEC)
        av_channel_layout_default(&layout, layout.nb_channels);
    SwrContext* context = nullptr;
    swr_alloc_set_opts2(&context, &stereo, AV_SAMPLE_FMT_FLT, mediaSampleRate, &layout,
                        static_cast<AVSampleFormat>(frame.format), frame.sample_rate, 0, nullptr);
    if (!context)
        return nullptr;
    // More than two channels are mixed so that full scale stays full scale.
    av_opt_set_double(context, "rematrix_maxval", 1.0, 0);
    // One channel goes to both sides as it is; the library would take 3 dB off.
    static constexpr std::array<double, 2> bothSides = {1.0, 1.0};
    if (layout.nb_channels == 1)
        swr_set_matrix(context, bothSides.data(), 1);
    if (swr_init(context) < 0)
        swr_free(&context);
    return context;
}

} // namespace

void StereoResampler::ContextDeleter::operator()(SwrContext* context) const {
    swr_free(&context);
}

std::span<const StereoFrame> StereoResampler::convert(const AVFrame& frame) {
    return follow(frame) ? run(&frame) : std::span<const StereoFrame>();
}

std::span<const StereoFrame> StereoResampler::drain() {
    return context_ ? run(nullptr) : std::span<const StereoFrame>();
}

bool StereoResampler::follow(const AVFrame& frame) {
    const bool same = frame.sample_rate == sampleRate_ && frame.format == sampleFormat_ &&
                      frame.ch_layout.nb_channels == channels_;
    if (context_ && same)
        return true;
    sampleRate_ = frame.sample_rate;
    sampleFormat_ = frame.format;
    channels_ = frame.ch_layout.nb_channels;
    context_.reset(makeContext(frame));
    return context_ != nullptr;
}

std::span<const StereoFrame> StereoResampler::run(const AVFrame* frame) {
    const int input = frame ? frame->nb_samples : 0;
    const int room = swr_get_out_samples(context_.get(), input);
    if (room <= 0)
        return {};
    output_.resize(std::max(output_.size(), static_cast<std::size_t>(room)));
    auto* out = reinterpret_cast<std::uint8_t*>(output_.data());
    const auto** in = frame ? const_cast<const std::uint8_t**>(frame->extended_data) : nullptr;
    const int count = swr_convert(context_.get(), &out, room, in, input);
    return std::span(output_).first(static_cast<std::size_t>(std::max(0, count)));
}

} // namespace tamsy
