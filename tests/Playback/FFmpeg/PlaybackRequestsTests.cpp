#include "Playback/FFmpeg/PlaybackRequests.h"
#include "Playback/FFmpeg/RingRenderer.h"
#include "Playback/FFmpeg/SilentOutput.h"
#include "Playback/Output/OutputKeeper.h"
#include "Playback/TestAudio.h"

#include <memory>
#include <vector>

namespace tamsy::test {
namespace {

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

struct OutputThatNeverStarts final : AudioOutput {
    bool start() override { return false; }
    void hold() override {}
    void flush() override {}
    [[nodiscard]] bool isAlive() const override { return true; }
    [[nodiscard]] bool isSilent() const override { return false; }
};

TEST(OutputKeeper, SaysAtOnceThatNoOutputStarts) {
    OutputKeeper output(std::make_shared<RingRenderer>(),
                        [](auto&&...) { return std::make_unique<OutputThatNeverStarts>(); });
    output.start();
    EXPECT_TRUE(output.wait(std::chrono::seconds(5)));
    EXPECT_EQ(output.state(), OutputKeeper::State::Lost);
}

} // namespace
} // namespace tamsy::test
