// The writing-time forecast of the main window's job, against the same job run on the
// virtual clock.
#include "sim/forecast.h"

#include <cstring>

#include "app/command_dispatch.h"
#include "app/startup.h"
#include "app/writing_forecast.h"
#include "link_fixture.h"
#include "pattern_fixture.h"
#include "resources/resource.h"
#include "station/responsive_wait.h"

namespace {

void putBigEndian(std::string& out, uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) out += static_cast<char>(value >> shift);
}

// A grey PNG of the picture's green channel, its deflate stream in stored blocks.
std::string pngOf(const RecordedPicture& picture) {
  std::string raw;
  for (int y = picture.height - 1; y >= 0; --y) {
    raw += '\0';
    for (int x = 0; x < picture.width; ++x)
      raw +=
          static_cast<char>(picture.pixels[(static_cast<size_t>(y) * picture.width + x) * 4 + 1]);
  }
  std::string deflate = "\x78\x01";
  for (size_t at = 0; at < raw.size(); at += 65535) {
    const auto length = static_cast<uint16_t>(std::min<size_t>(65535, raw.size() - at));
    deflate += at + length == raw.size() ? '\1' : '\0';
    deflate += {static_cast<char>(length), static_cast<char>(length >> 8),
                static_cast<char>(~length), static_cast<char>(~length >> 8)};
    deflate += raw.substr(at, length);
  }
  deflate += std::string(4, '\0');  // the checksum, which readers may skip
  std::string file = "\x89PNG\r\n\x1a\n";
  const auto chunk = [&file](const char* type, const std::string& data) {
    putBigEndian(file, static_cast<uint32_t>(data.size()));
    file += type + data + std::string(4, '\0');
  };
  std::string header;
  putBigEndian(header, picture.width);
  putBigEndian(header, picture.height);
  chunk("IHDR", header + std::string{8, 0, 0, 0, 0});
  chunk("IDAT", deflate);
  chunk("IEND", "");
  return file;
}

}  // namespace

class Forecasting : public LinkTest {
 protected:
  void SetUp() override {
    LinkTest::SetUp();
    resetPatternStores();
  }
};

// A mask with a rectangle and two lines: "Forecast Writing Time" hands the program's own
// settings, picture and lines to the forecast, which takes to the millisecond the time the
// same job takes through "Start Writing" on the virtual clock, and its four parts add up
// to its total. It saves the exposure picture and names it in its message.
TEST_F(Forecasting, TheMainWindowsJobTakesTheForecastTime) {
  EXPECT_TRUE(prepareForecastArguments(desktop_ / "forecast").empty()) << "nothing to write";
  std::vector<uint32_t> pixels(200 * 200, 0xFFFFFFFF);
  for (int y = 60; y < 90; ++y) std::fill_n(&pixels[y * 200 + 70], 40, 0xFF000000);
  const RecordedPicture picture = pictureOf(200, 200, pixels);
  const std::filesystem::path maskFile = desktop_ / "mask.png";
  writeFile(maskFile, pngOf(picture));
  recordedRegisterPicture(maskFile.wstring(), picture);
  startUpDevices();
  recordedQueueFileChoice(maskFile.wstring());
  dispatchCommand(IDM_IMPORT_IMAGE);
  dispatchCommand(IDM_MASK_PATTERN);
  linePattern.segments = {{-300, 200, 100, 200, 1}, {100, 200, 100, 400, 3}};
  const std::vector<std::wstring> arguments = prepareForecastArguments(desktop_ / "forecast");
  const uint64_t startMs = virtualClockNow();
  dispatchCommand(IDC_START_WRITING);
  const uint64_t runMs = virtualClockNow() - startMs;
  const int runCommands = static_cast<int>(virtualSerialBoard().commands.size());

  ASSERT_EQ(arguments.size(), 7u);
  const ForecastJob job = {arguments[1], arguments[3], arguments[5], arguments[6],
                           HostTimer::Exact};
  const Forecast forecast = forecastWritingRun(job);
  ASSERT_EQ(forecast.error, "");
  EXPECT_EQ(forecast.totalMs, runMs);
  EXPECT_GT(runMs, 10'000u);
  EXPECT_EQ(forecast.strokeMs + forecast.moveMs + forecast.waitMs + forecast.serialMs,
            forecast.totalMs);
  for (uint64_t part : {forecast.strokeMs, forecast.moveMs, forecast.waitMs, forecast.serialMs})
    EXPECT_GT(part, 0u);
  EXPECT_NEAR(forecast.commands, runCommands, runCommands / 50);
  EXPECT_GT(forecast.strokes, 20);
  EXPECT_TRUE(std::filesystem::is_regular_file(forecast.exposurePicture));

  const std::string message = forecastMessage(0, forecastReport(forecast));
  const uint64_t totalS = (forecast.totalMs + 500) / 1000;
  EXPECT_EQ(message.substr(0, message.find('\n')), "Writing time: " + std::to_string(totalS / 60) +
                                                       " min " + std::to_string(totalS % 60) +
                                                       " s");
  EXPECT_NE(message.find("exposure picture: " + forecast.exposurePicture.string()),
            std::string::npos);
  EXPECT_EQ(forecastMessage(2, "error: cannot read the mask picture x.png\n"),
            "The forecast could not be made.\ncannot read the mask picture x.png");
}

// The program's 10 ms pause, from a clock interrupt, on each host's timer: to the
// millisecond on the tests' clock; until the first 15.625 ms interrupt past it on Windows,
// where the tick count has then moved 15 ms; twice 10 ms under Wine, whose tick count does
// not move while the program sleeps, only when it next looks at its messages.
TEST_F(Forecasting, TheProgramsPauseLastsWhatItsHostGivesIt) {
  for (const auto& [host, pauseMs] : {std::pair{HostTimer::Exact, 10u},
                                      {HostTimer::WindowsTick, 16u},
                                      {HostTimer::WineServerTick, 20u}}) {
    virtualClockReset(1'000'000);
    virtualClockSetHostTimer(host);
    waitResponsive(10);
    EXPECT_EQ(virtualClockNow() - 1'000'000, pauseMs);
  }
  virtualClockReset();
}

// The same mask forecast for a PC on which each pixel marked on the display costs 1 ms
// takes 1 ms longer for each pixel the engines marked.
TEST_F(Forecasting, ThePCsDrawingLengthensTheRun) {
  std::vector<uint32_t> pixels(200 * 200, 0xFFFFFFFF);
  for (int y = 60; y < 80; ++y) std::fill_n(&pixels[y * 200 + 70], 30, 0xFF000000);
  const RecordedPicture picture = pictureOf(200, 200, pixels);
  ForecastJob job;
  job.maskFile = desktop_ / "mask.png";
  writeFile(job.maskFile, pngOf(picture));
  recordedRegisterPicture(job.maskFile.wstring(), picture);
  job.outputFolder = desktop_ / "forecast";
  job.host = HostTimer::Exact;
  const Forecast exact = forecastWritingRun(job);
  ASSERT_EQ(exact.error, "");
  const int markedPixels = station.doneCells;
  ASSERT_GT(markedPixels, 500);

  job.pixelUs = 1000;
  const Forecast drawn = forecastWritingRun(job);
  EXPECT_NEAR(double(drawn.totalMs - exact.totalMs), markedPixels, markedPixels * 0.02);
}
