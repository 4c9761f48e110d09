#include "Playback/FFmpeg/PlaybackLoop.h"
#include "Playback/FFmpeg/RingRenderer.h"
#include "Playback/FFmpeg/SilentOutput.h"
#include "Playback/TestAudio.h"

#include <array>
#include <thread>
#include <vector>

namespace tamsy::test {
namespace {

class EndlessSilence final : public MediaDecoder {
  public:
    [[nodiscard]] double duration() const override { return 3600; }
    [[nodiscard]] Block decode() override { return {frames_, false}; }
    double seek(double seconds) override { return seconds; }

  private:
    std::array<StereoFrame, 1024> frames_{};
};

/// Opens anything, and has no way out for its sound.
class BackendWithoutOutput final : public MediaBackend {
  public:
    std::unique_ptr<MediaDecoder> openFile(const char* /*path*/,
                                           const std::atomic<bool>& /*abandoned*/) override {
        return std::make_unique<EndlessSilence>();
    }
    std::unique_ptr<AudioOutput> openOutput(AudioRenderer& /*renderer*/,
                                            bool /*maySilent*/) override {
        return nullptr;
    }
};

TEST(PlaybackLoop, TellsThatNothingIsHeardWhereNoOutputOpens) {
    BackendWithoutOutput backend;
    const auto renderer = std::make_shared<RingRenderer>();
    OutputKeeper output(renderer, [&](AudioRenderer& frames, bool maySilent) {
        return backend.openOutput(frames, maySilent);
    });
    PlaybackRequests requests(output);
    std::atomic<bool> isLost = false;
    PlaybackLoop loop(
        requests, output, renderer->ring(), [&] { return &backend; },
        [&](const PlaybackReport& report) {
            if (report.kind == PlaybackReport::Kind::Lost)
                isLost = true;
        });
    std::thread thread([&] { loop.run(); });
    requests.setRunning(requests.setItem("any"), true);
    EXPECT_TRUE(waitUntil([&] { return isLost.load(); }, 5000));
    requests.quit();
    thread.join();
}

TEST(PlaybackRequests, LeaveNoOutputToAbandonedThreads) {
    const auto open = [](AudioRenderer& renderer, bool /*maySilent*/) {
        return std::make_unique<SilentOutput>(renderer);
    };
    constexpr std::size_t moreThanMayHang = 9;
    std::vector<std::unique_ptr<OutputKeeper>> outputs;
    while (outputs.size() < moreThanMayHang) {
        outputs.push_back(std::make_unique<OutputKeeper>(std::make_shared<RingRenderer>(), open));
        outputs.back()->open();
        EXPECT_TRUE(waitUntil([&] { return outputs.back()->isOpen(); })) << outputs.size();
        PlaybackRequests(*outputs.back()).quit();
    }
}

TEST(PlaybackRequests, CountAnItemAsTakenWhateverElseIsAskedOfIt) {
    OutputKeeper output(std::make_shared<RingRenderer>(), [](auto&&...) { return nullptr; });
    PlaybackRequests requests(output);
    const std::uint64_t item = requests.setItem("any");
    EXPECT_FALSE(requests.isTaken());
    EXPECT_EQ(requests.wait({}).item, item);
    requests.setRunning(item, true); // while the thread opens the file
    EXPECT_TRUE(requests.isTaken());
    EXPECT_NE(requests.setItem("next"), item);
    EXPECT_FALSE(requests.isTaken());
}

} // namespace
} // namespace tamsy::test
