#include "platform/platform.h"

#include <array>
#include <bitset>
#include <clocale>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#if !defined(_WIN32)
#include <algorithm>
#include <csignal>

#include <sys/stat.h>
#include <sys/wait.h>
#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>
#endif

#include "runtime_locale.h"
#include "support.h"

namespace exportifc {
namespace {

TEST(Platform, AFileIsCreatedAndWrittenAtOnce) {
  const test::TemporaryFolder folder;
  const std::string path = folder.file("out.ifc");
  auto file = platform::openForWriting(test::wide(path));
  ASSERT_NE(file, nullptr);
  EXPECT_TRUE(file->write("a\r\n\x1A\xE7", 5));
  EXPECT_EQ(test::readFile(path), "a\r\n\x1A\xE7") << "not held back, not converted";
  EXPECT_TRUE(file->write("b", 1));
  file.reset();
  EXPECT_EQ(test::readFile(path),
            "a\r\n\x1A\xE7"
            "b");
}

TEST(Platform, AnExistingFileIsTruncated) {
  const test::TemporaryFolder folder;
  const std::string path = folder.file("out.ifc");
  test::writeFile(path, "something longer");
  platform::openForWriting(test::wide(path))->write("x", 1);
  EXPECT_EQ(test::readFile(path), "x");
}

TEST(Platform, WhatCannotBeOpenedIsNull) {
  const test::TemporaryFolder folder;
  std::filesystem::create_directory(folder.file("folder"));
  for (const std::string name : {"folder", "missing/out.ifc"}) {
    EXPECT_EQ(platform::openForWriting(test::wide(folder.file(name))), nullptr) << name;
  }
  EXPECT_EQ(platform::openForWriting(L""), nullptr);
}

#if !defined(_WIN32)

TEST(Platform, ASignalInTheMiddleOfAWriteLosesNothing) {
  // Calls into a full pipe are interrupted again and again, some before anything is written.
  const test::TemporaryFolder folder;
  const std::string path = folder.file("pipe");
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  struct sigaction ignore {};
  struct sigaction before {};
  ignore.sa_handler = [](int) {};  // without SA_RESTART: the call returns
  ASSERT_EQ(::sigaction(SIGUSR1, &ignore, &before), 0);
  std::string content;
  for (int i = 0; content.size() < 1000000; ++i) {
    content += std::to_string(i);
  }

  std::string received;
  const pthread_t writer = ::pthread_self();
  std::thread reader([&] {
    const int pipe = ::open(path.c_str(), O_RDONLY);
    std::array<char, 5000> piece{};
    for (ssize_t size = 1; size > 0;) {
      size = ::read(pipe, piece.data(), piece.size());
      received.append(piece.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
      for (int signal = 0; signal < 2; ++signal) {  // the second while there is no room at all
        ::pthread_kill(writer, SIGUSR1);
        ::usleep(100);
      }
    }
    ::close(pipe);
  });
  auto file = platform::openForWriting(test::wide(path));
  EXPECT_NE(file, nullptr);
  EXPECT_TRUE(file->write(content.data(), content.size()));
  file.reset();
  reader.join();
  ::sigaction(SIGUSR1, &before, nullptr);
  EXPECT_EQ(received, content);
}

#endif

TEST(Platform, CanRead) {
  const test::TemporaryFolder folder;
  test::writeFile(folder.file("here"), "");
  EXPECT_TRUE(platform::canRead(test::wide(folder.file("here"))));
  EXPECT_FALSE(platform::canRead(test::wide(folder.file("missing"))));
  EXPECT_FALSE(test::fileExists(folder.file("missing")));
  std::filesystem::create_directory(folder.file("folder"));
  EXPECT_FALSE(platform::canRead(test::wide(folder.file("folder"))));
}

TEST(Platform, PathsBecomeWideAndNarrowAgain) {
  const std::string path = "C:/Obras/Galp\xE3o 1/model.txt";
  const auto wide = platform::widenPath(path);
  ASSERT_TRUE(wide.has_value());
  EXPECT_EQ(*wide, L"C:/Obras/Galp\u00E3o 1/model.txt");
  EXPECT_EQ(platform::narrowPath(*wide), path);
  EXPECT_EQ(platform::widenPath(""), L"");
  EXPECT_EQ(platform::narrowPath(L""), "");
}

TEST(Platform, EveryBitOfAGuidIsItsOwn) {
  // But for version and variant, no bit is fixed, and none follows another.
  constexpr int count = 100;
  std::array<std::bitset<count>, 128> bits;
  for (int i = 0; i < count; ++i) {
    const platform::Guid guid = platform::newGuid();
    std::array<std::uint8_t, 16> bytes{};
    static_assert(sizeof(guid) == sizeof(bytes));
    std::memcpy(bytes.data(), &guid, sizeof(guid));
    for (std::size_t bit = 0; bit < bits.size(); ++bit) {
      bits[bit][static_cast<std::size_t>(i)] = ((bytes[bit / 8] >> (bit % 8)) & 1) != 0;
    }
  }
  std::size_t fixed = 0;
  for (std::size_t bit = 0; bit < bits.size(); ++bit) {
    if (bits[bit].none() || bits[bit].all()) {
      ++fixed;
      continue;
    }
    for (std::size_t other = 0; other < bit; ++other) {
      const auto different = bits[bit] ^ bits[other];
      EXPECT_TRUE(different.any()) << bit << " is always as " << other;
      EXPECT_FALSE(different.all()) << bit << " is never as " << other;
    }
  }
  EXPECT_EQ(fixed, 6U) << "version 4 and variant 10";
}

TEST(Platform, EachThreadHasGuidsOfItsOwn) {
  // The first one of a thread, too.
  std::array<platform::Guid, 4> guids;
  for (platform::Guid& guid : guids) {
    std::thread([&] { guid = platform::newGuid(); }).join();
  }
  for (std::size_t i = 0; i < guids.size(); ++i) {
    EXPECT_NE(guids[i], platform::Guid{});
    for (std::size_t j = 0; j < i; ++j) {
      EXPECT_NE(guids[i], guids[j]);
    }
  }
}

#if defined(_WIN32)

TEST(Platform, APathWithoutANarrowForm) {
  const test::KeepRuntimeLocale keep;
  ASSERT_NE(std::setlocale(LC_ALL, "Portuguese"), nullptr);
  EXPECT_EQ(platform::narrowPath(L"\u4E2D.ifc"), std::nullopt);
  EXPECT_EQ(platform::narrowPath(L"\u20AC.ifc"), "\x80.ifc") << "the euro sign has one";
}

TEST(Platform, APathThatIsNoTextInTheLocale) {
  const test::KeepRuntimeLocale keep;
  ASSERT_NE(std::setlocale(LC_ALL, ".932"), nullptr);
  EXPECT_EQ(platform::widenPath("a\x81"), std::nullopt);
}

TEST(Platform, APathThatGrowsWhenNarrowed) {
  const test::KeepRuntimeLocale keep;
  ASSERT_NE(std::setlocale(LC_ALL, ".932"), nullptr);
  EXPECT_EQ(platform::narrowPath(L"\u3042"), std::nullopt) << "two bytes for one unit";
}

#else

TEST(Platform, AForkedProcessHasGuidsOfItsOwn) {
  // Random bytes are fetched ahead; a child must not use those of its parent again.
  (void)platform::newGuid();
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe(ends.data()), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    const platform::Guid guid = platform::newGuid();
    const bool sent = ::write(ends[1], &guid, sizeof(guid)) == sizeof(guid);
    ::_exit(sent ? 0 : 1);
  }
  ASSERT_GT(child, 0);
  platform::Guid other;
  EXPECT_EQ(::read(ends[0], &other, sizeof(other)), static_cast<ssize_t>(sizeof(other)));
  int status = -1;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  ::close(ends[0]);
  ::close(ends[1]);
  EXPECT_NE(other, platform::Guid{});
  EXPECT_NE(other, platform::newGuid());
}

TEST(Platform, PathsAreBytes) {
  std::string every;
  for (int byte = 1; byte < 256; ++byte) {
    every.push_back(static_cast<char>(byte));
  }
  const auto wide = platform::widenPath(every);
  ASSERT_TRUE(wide.has_value());
  EXPECT_EQ(wide->size(), every.size()) << "one unit a byte, UTF-8 or not";
  EXPECT_EQ(platform::narrowPath(*wide), every);
}

#endif

}  // namespace
}  // namespace exportifc
