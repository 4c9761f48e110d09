#include "Playback/Resampling/Resampler.h"

#include <soxr.h>

#include <algorithm>
#include <numeric>

namespace tamsy {
namespace {

/// The size of the output buffer, in frames.
constexpr std::size_t blockFrames = 4096;

/// Nothing is recorded at lower rates, and one input frame would become hundreds.
constexpr std::uint32_t lowestRate = 100;

/// If restart points were further apart, in input frames, a seek would decode too much. All usual
/// rates need at most 147.
constexpr std::uint64_t largestAlignment = 4096;

/// Half the filter's length, in frames of the lower rate, rounded up.
constexpr std::uint64_t filterReach = 512;

soxr* makeFilter(std::uint32_t inputRate) {
    // 28 bits: flat up to 0.456 of the lower rate, with all aliases below -160 dB.
    const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_VHQ, 0);
    return soxr_create(inputRate, mediaSampleRate, 2, nullptr, nullptr, &quality, nullptr);
}

std::uint64_t alignmentOf(std::uint32_t inputRate) {
    const std::uint64_t period =
        inputRate / std::gcd(inputRate, static_cast<std::uint32_t>(mediaSampleRate));
    return period > 0 && period <= largestAlignment ? period : 1;
}

} // namespace

void Resampler::FilterDeleter::operator()(soxr* filter) const {
    soxr_delete(filter);
}

Resampler::Resampler(std::uint32_t inputRate)
    : inputRate_(inputRate), alignment_(alignmentOf(inputRate)) {
    restart();
}

void Resampler::restart() {
    if (!isPassThrough() && inputRate_ >= lowestRate)
        filter_.reset(makeFilter(inputRate_));
}

std::span<const StereoFrame> Resampler::process(std::span<const StereoFrame> input) {
    return isPassThrough() ? input : run(input.data(), input.size());
}

std::span<const StereoFrame> Resampler::drain() {
    return isPassThrough() ? std::span<const StereoFrame>() : run(nullptr, 0);
}

std::span<const StereoFrame> Resampler::run(const StereoFrame* input, std::size_t count) {
    std::size_t filled = 0;
    std::size_t taken = 0;
    std::size_t given = 0;
    do {
        output_.resize(std::max(output_.size(), filled + blockFrames));
        if (soxr_process(filter_.get(), input, count, &taken, output_.data() + filled, blockFrames,
                         &given) != nullptr)
            break; // out of memory: the remaining input is lost
        filled += given;
        count -= taken;
        input = input == nullptr ? nullptr : input + taken;
    } while (given == blockFrames || taken > 0);
    return std::span(output_).first(filled);
}

std::uint64_t Resampler::outputFrames(std::uint64_t inputFrames) const {
    if (isPassThrough() || inputRate_ == 0)
        return inputFrames;
    // Computed in whole seconds and a remainder, since the product could overflow.
    const std::uint64_t rest = inputFrames % inputRate_;
    return inputFrames / inputRate_ * mediaSampleRate +
           (2 * rest * mediaSampleRate + inputRate_) / (2 * std::uint64_t{inputRate_});
}

std::uint64_t Resampler::settlingFrames() const {
    if (isPassThrough())
        return 0;
    return std::max(filterReach, filterReach * inputRate_ / mediaSampleRate);
}

Resampler::Restart Resampler::restartFor(std::uint64_t outputFrame) const {
    if (isPassThrough())
        return {outputFrame, 0};
    const std::uint64_t rest = outputFrame % mediaSampleRate;
    std::uint64_t input =
        outputFrame / mediaSampleRate * inputRate_ + rest * inputRate_ / mediaSampleRate;
    input -= std::min(input, settlingFrames());
    input -= input % alignment_;
    return {input, outputFrame - outputFrames(input)};
}

} // namespace tamsy
