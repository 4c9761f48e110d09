#include "Playback/FFmpeg/FrameConverter.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/frame.h>
#include <libswresample/swresample.h>
}

#include <algorithm>

namespace tamsy {
namespace {

/// Interleaves and converts any sample format to floats, without changing channels or rate.
SwrContext* makeSampleConversion(const AVFrame& frame) {
    AVChannelLayout channels = {};
    channels.order = AV_CHANNEL_ORDER_UNSPEC;
    channels.nb_channels = frame.ch_layout.nb_channels;
    SwrContext* context = nullptr;
    swr_alloc_set_opts2(&context, &channels, AV_SAMPLE_FMT_FLT, frame.sample_rate, &channels,
                        static_cast<AVSampleFormat>(frame.format), frame.sample_rate, 0, nullptr);
    if (context && swr_init(context) < 0)
        swr_free(&context);
    return context;
}

std::vector<Speaker> speakersOf(const AVFrame& frame) {
    AVChannelLayout layout = frame.ch_layout;
    if (layout.order == AV_CHANNEL_ORDER_UNSPEC)
        av_channel_layout_default(&layout, layout.nb_channels);
    std::vector<Speaker> speakers;
    for (int i = 0; i < layout.nb_channels; ++i) {
        const auto index = static_cast<unsigned>(i);
        speakers.push_back(speakerAt(av_channel_layout_channel_from_index(&layout, index)));
    }
    return speakers;
}

} // namespace

void FrameConverter::ContextDeleter::operator()(SwrContext* context) const {
    swr_free(&context);
}

std::optional<FrameConverter::Conversion> FrameConverter::conversionOf(const AVFrame& frame) {
    if (frame.sample_rate <= 0 || frame.ch_layout.nb_channels <= 0)
        return std::nullopt;
    Conversion conversion = {
        .samples = std::unique_ptr<SwrContext, ContextDeleter>(makeSampleConversion(frame)),
        .mix = DownMix(speakersOf(frame)),
        .resampler = Resampler(static_cast<std::uint32_t>(frame.sample_rate))};
    if (!conversion.samples || !conversion.resampler.isUsable())
        return std::nullopt;
    return conversion;
}

bool FrameConverter::isSameFormat(const AVFrame& frame) const {
    return frame.sample_rate == sampleRate_ && frame.format == sampleFormat_ &&
           frame.ch_layout.nb_channels == channels_;
}

bool FrameConverter::follow(const AVFrame& frame) {
    sampleRate_ = frame.sample_rate;
    sampleFormat_ = frame.format;
    channels_ = frame.ch_layout.nb_channels;
    conversion_ = conversionOf(frame);
    return conversion_.has_value();
}

std::span<const StereoFrame> FrameConverter::convert(const AVFrame& frame) {
    if (conversion_ && isSameFormat(frame))
        return run(frame);
    const auto held = drain();
    joined_.assign(held.begin(), held.end());
    if (follow(frame)) {
        const auto first = run(frame);
        joined_.insert(joined_.end(), first.begin(), first.end());
    }
    return joined_;
}

std::span<const StereoFrame> FrameConverter::run(const AVFrame& frame) {
    const auto channels = static_cast<std::size_t>(channels_);
    samples_.resize(static_cast<std::size_t>(frame.nb_samples) * channels);
    auto* out = reinterpret_cast<std::uint8_t*>(samples_.data());
    const auto** in = const_cast<const std::uint8_t**>(frame.extended_data);
    const int count =
        swr_convert(conversion_->samples.get(), &out, frame.nb_samples, in, frame.nb_samples);
    const auto frames = static_cast<std::size_t>(std::max(0, count));
    const std::size_t skipped = std::min<std::size_t>(skippedInput_, frames);
    skippedInput_ -= skipped;
    const auto samples = std::span<const float>(samples_).first(frames * channels);
    return conversion_->resampler.process(
        conversion_->mix.mix(samples.subspan(skipped * channels)));
}

std::span<const StereoFrame> FrameConverter::drain() {
    return conversion_ ? conversion_->resampler.drain() : std::span<const StereoFrame>();
}

std::int64_t FrameConverter::restart(const AVFrame& frame, std::int64_t inputFrame) {
    if (conversion_ && isSameFormat(frame))
        conversion_->resampler.restart();
    else if (!follow(frame))
        return 0;
    const Resampler& resampler = conversion_->resampler;
    if (inputFrame < 0) { // the encoder's delay
        skippedInput_ = static_cast<std::uint64_t>(-inputFrame);
        return 0;
    }
    const auto start = static_cast<std::uint64_t>(inputFrame);
    const std::uint64_t past = start % resampler.alignment();
    skippedInput_ = past > 0 ? resampler.alignment() - past : 0;
    return static_cast<std::int64_t>(resampler.outputFrames(start + skippedInput_));
}

std::int64_t FrameConverter::seekLead() const {
    if (!conversion_)
        return 0;
    const Resampler& resampler = conversion_->resampler;
    return static_cast<std::int64_t>(
        resampler.outputFrames(resampler.settlingFrames() + resampler.alignment() - 1));
}

} // namespace tamsy
