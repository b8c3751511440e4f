// What is packed comes out again, in the same bytes each time; what is damaged is refused.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>
#include <zlib.h>

#include "library/packing/base64_sink.h"
#include "library/packing/deflate_sink.h"
#include "library/packing/zip_reader.h"
#include "library/packing/zip_sink.h"
#include "tests/support/random.h"
#include "tests/support/sinks.h"

namespace exportifc::cli {
namespace {

using test::MemorySink;
using test::Random;
using test::Received;
using test::rounds;

/// Lines as an exchange file has them, or bytes that cannot be packed.
std::string randomContent(Random& random, std::size_t size) {
  const bool isText = random.once(2);
  std::string content;
  while (content.size() < size) {
    if (isText) {
      content += "#" + std::to_string(random.integer(1, 99999)) + "= IFCDIRECTION((0.,0.,1.));\r\n";
    } else {
      content.push_back(static_cast<char>(random.integer(0, 255)));
    }
  }
  content.resize(size);
  return content;
}

std::size_t randomSize(Random& random) {
  return static_cast<std::size_t>(random.integer(0, random.once(4) ? 300000 : 300));
}

/// Writes in pieces of any size, empty ones too.
void writeInPieces(std::string_view content, ByteSink& sink, Random& random) {
  while (!content.empty()) {
    const auto most = static_cast<std::int64_t>(content.size());
    const auto size = static_cast<std::size_t>(
        random.integer(0, random.once(2) ? most : std::min<std::int64_t>(most, 100)));
    EXPECT_TRUE(sink.write(content.data(), size));
    content.remove_prefix(size);
  }
}

// ---- base 64

/// As the document of base 64 has it: 6 bits a letter, "=" in the place of bytes that are missing.
std::string fromBase64(const std::string& letters) {
  const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  EXPECT_EQ(letters.size() % 4, 0U);
  std::string bytes;
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < letters.size(); ++i) {
    const std::size_t value = letters[i] == '=' ? 0 : alphabet.find(letters[i]);
    EXPECT_NE(value, std::string::npos);
    bits = (bits << 6) | static_cast<std::uint32_t>(value);
    if (i % 4 == 3) {
      bytes +=
          {static_cast<char>(bits >> 16), static_cast<char>(bits >> 8), static_cast<char>(bits)};
    }
  }
  const std::size_t end = letters.find('=');
  const std::size_t missing = end == std::string::npos ? 0 : letters.size() - end;
  EXPECT_LE(missing, 2U);
  return bytes.substr(0, bytes.size() - missing);
}

TEST(Base64, IsThatOfTheStandard) {
  const std::pair<std::string, std::string> examples[] = {{"", ""},
                                                          {"f", "Zg=="},
                                                          {"fo", "Zm8="},
                                                          {"foo", "Zm9v"},
                                                          {"foob", "Zm9vYg=="},
                                                          {"fooba", "Zm9vYmE="},
                                                          {"foobar", "Zm9vYmFy"},
                                                          {"\xFB\xFF\xBF", "+/+/"}};
  for (const auto& [bytes, letters] : examples) {
    Received received;
    MemorySink memory(received);
    Base64Sink sink(memory);
    EXPECT_TRUE(sink.write(bytes));
    EXPECT_TRUE(sink.finish());
    EXPECT_EQ(received.bytes, letters);
  }
}

TEST(Base64, IsTheSameInAnyPieces) {
  Random random(1);
  for (int round = 0; round < rounds(200); ++round) {
    const std::string content = randomContent(random, randomSize(random));
    Received received;
    MemorySink memory(received);
    Base64Sink sink(memory);
    writeInPieces(content, sink, random);
    EXPECT_TRUE(sink.finish());
    EXPECT_EQ(fromBase64(received.bytes), content);
  }
}

// ---- gzip

std::string gzipped(const std::string& content, Random& random) {
  Received received;
  MemorySink memory(received);
  DeflateSink sink(memory, DeflateFrame::gzip);
  writeInPieces(content, sink, random);
  EXPECT_TRUE(sink.finish());
  EXPECT_EQ(sink.taken(), content.size());
  EXPECT_EQ(sink.given(), received.bytes.size());
  return received.bytes;
}

/// By zlib's own reading of gzip.
std::string gunzipped(const std::string& given, std::size_t size) {
  std::string packed = given;  // zlib takes nothing constant
  std::string content(size + 1, '\0');
  z_stream stream{};
  EXPECT_EQ(inflateInit2(&stream, MAX_WBITS + 16), Z_OK);
  stream.next_in = reinterpret_cast<unsigned char*>(packed.data());
  stream.avail_in = static_cast<unsigned>(packed.size());
  stream.next_out = reinterpret_cast<unsigned char*>(content.data());
  stream.avail_out = static_cast<unsigned>(content.size());
  EXPECT_EQ(inflate(&stream, Z_FINISH), Z_STREAM_END);
  EXPECT_EQ(stream.avail_in, 0U);
  content.resize(stream.total_out);
  inflateEnd(&stream);
  return content;
}

TEST(Gzip, ComesOutAgain) {
  Random random(2);
  for (int round = 0; round < rounds(100); ++round) {
    const std::string content = randomContent(random, randomSize(random));
    EXPECT_EQ(gunzipped(gzipped(content, random), content.size()), content);
  }
}

TEST(Gzip, IsTheSameInAnyPieces) {
  Random random(3);
  for (int round = 0; round < rounds(20); ++round) {
    const std::string content = randomContent(random, randomSize(random));
    EXPECT_EQ(gzipped(content, random), gzipped(content, random));
  }
}

TEST(Gzip, TellsNoNameNoTimeAndNoSystem) {
  Random random(4);
  const std::string head("\x1F\x8B\x08\0\0\0\0\0\0\xFF", 10);
  EXPECT_EQ(gzipped("x", random).substr(0, head.size()), head);
}

TEST(Gzip, EndsWhereItsOutputRefuses) {
  Random random(5);
  std::string content;
  for (int i = 0; i < 300000; ++i) {
    content.push_back(static_cast<char>(random.integer(0, 255)));
  }
  for (const std::size_t room : {0U, 100U, 65535U, 65536U, 200000U}) {
    Received received;
    MemorySink memory(received, room);
    DeflateSink sink(memory, DeflateFrame::gzip);
    EXPECT_FALSE(sink.write(content.data(), content.size()));
    EXPECT_FALSE(sink.write("", 0)) << "later writes";
    EXPECT_FALSE(sink.finish());
    EXPECT_EQ(received.refusals, 1U) << "asked again";
    EXPECT_EQ(received.bytes.size(), room);
  }
}

// ---- zip

std::string zipped(const std::string& name, const std::string& content, Random& random) {
  Received received;
  MemorySink memory(received);
  ZipSink sink(memory, name);
  writeInPieces(content, sink, random);
  EXPECT_TRUE(sink.finish());
  EXPECT_FALSE(sink.isTooLarge());
  return received.bytes;
}

/// What comes out of the one member of a zip, or why nothing does.
struct Unzipped {
  std::string name;
  std::string content;
  std::optional<ZipTrouble> fault{};
};

Unzipped unzipped(const std::string& bytes, std::size_t room = MemorySink::endless) {
  Unzipped result;
  std::istringstream file(bytes);
  Received received;
  try {
    ZipReader zip(file);
    EXPECT_LE(zip.members().size(), 1U);
    if (!zip.members().empty()) {
      result.name = zip.members().front().name;
      MemorySink memory(received, room);
      zip.unpack(zip.members().front(), memory);
    }
  } catch (const ZipFault& fault) {
    result.fault = fault.trouble();
  }
  result.content = received.bytes;
  return result;
}

void put(std::string& bytes, std::size_t place, std::uint32_t number, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) {
    bytes[place + i] = static_cast<char>(number >> (8 * i));
  }
}

/// A zip by hand, with its content as it is: head at 0, content at 31, directory at 36, end at 83.
std::string storedZip() {
  using std::string_literals::operator""s;
  const std::string sizes = "\x86\xA6\x10\x36\5\0\0\0\5\0\0\0"s;  // the checksum of "hello"
  return "PK\3\4\x0A\0\0\0\0\0\0\0\x21\0"s + sizes + "\1\0\0\0"s + "a" + "hello" +
         "PK\1\2\x0A\0\x0A\0\0\0\0\0\0\0\x21\0"s + sizes + "\1\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"s +
         "a" + "PK\5\6\0\0\0\0\1\0\1\0\x2F\0\0\0\x24\0\0\0\0\0"s;
}
constexpr std::size_t storedDirectory = 36;
constexpr std::size_t storedEnd = 83;

TEST(Zip, ComesOutAgain) {
  Random random(6);
  for (int round = 0; round < rounds(100); ++round) {
    const std::string content = randomContent(random, randomSize(random));
    const std::string name = "m" + std::to_string(round) + ".ifc";
    const Unzipped result = unzipped(zipped(name, content, random));
    EXPECT_FALSE(result.fault);
    EXPECT_EQ(result.name, name);
    EXPECT_EQ(result.content, content);
  }
}

TEST(Zip, IsTheSameInAnyPieces) {
  Random random(7);
  const std::string content = randomContent(random, 200000);
  EXPECT_EQ(zipped("a.ifc", content, random), zipped("a.ifc", content, random));
}

TEST(Zip, SaysThatANameIsUtf8WhenItIs) {
  Random random(8);
  const auto isUtf8 = [](const std::string& zip) { return (zip[7] & 0x08) != 0; };
  EXPECT_TRUE(isUtf8(zipped("galp\xC3\xA3o.ifc", "x", random)));
  EXPECT_FALSE(isUtf8(zipped("galp\xE3o.ifc", "x", random)));
}

TEST(Zip, ReadsWhatIsNotPacked) {
  const Unzipped result = unzipped(storedZip());
  EXPECT_FALSE(result.fault);
  EXPECT_EQ(result.name, "a");
  EXPECT_EQ(result.content, "hello");
}

TEST(Zip, ReadsBehindACommentAndExtraFields) {
  std::string zip = storedZip();
  zip.insert(storedEnd, "more");  // behind the member in the directory
  put(zip, storedDirectory + 30, 3, 2);
  put(zip, storedDirectory + 32, 1, 2);
  zip.insert(31, "xy");  // before the content
  put(zip, 28, 2, 2);
  put(zip, zip.size() - 6, storedDirectory + 2, 4);
  zip += std::string(0xFFFF, 'c');
  EXPECT_EQ(unzipped(zip).content, "hello");
  EXPECT_EQ(unzipped(zip + "c").fault, ZipTrouble::damaged) << "a comment longer than there can be";
}

TEST(Zip, HasAsManyMembersAsItsDirectory) {
  std::string zip = storedZip();
  std::string second = zip.substr(storedDirectory, storedEnd - storedDirectory);
  second.back() = 'b';
  zip.insert(storedEnd, second);
  put(zip, zip.size() - 12, 2, 2);
  std::istringstream file(zip);
  ZipReader reader(file);
  ASSERT_EQ(reader.members().size(), 2U);
  EXPECT_EQ(reader.members()[0].name, "a");
  EXPECT_EQ(reader.members()[1].name, "b");
}

TEST(Zip, RefusesWhatItCannotRead) {
  const auto changed = [](std::size_t place, std::uint32_t number, std::size_t size) {
    std::string zip = storedZip();
    put(zip, storedDirectory + place, number, size);
    return unzipped(zip).fault;
  };
  EXPECT_EQ(changed(8, 1, 2), ZipTrouble::encrypted);
  EXPECT_EQ(changed(10, 12, 2), ZipTrouble::unknown) << "another method";
  for (const std::size_t place : {20U, 24U, 42U}) {
    EXPECT_EQ(changed(place, 0xFFFFFFFF, 4), ZipTrouble::unknown)
        << "a number of 64 bits: " << place;
  }
  EXPECT_EQ(changed(storedEnd - storedDirectory + 16, 0xFFFFFFFF, 4), ZipTrouble::unknown)
      << "the directory beyond 4 GiB";
}

TEST(Zip, IsWholeOrDamaged) {
  Random random(9);
  const std::string zip = zipped("a.ifc", randomContent(random, 3000), random);
  for (std::size_t size = 0; size < zip.size(); ++size) {
    EXPECT_EQ(unzipped(zip.substr(0, size)).fault, ZipTrouble::damaged) << size;
  }
}

TEST(Zip, GivesTheRightContentOrAFaultWhateverBitIsWrong) {
  Random random(10);
  const std::string content = randomContent(random, 1000);
  for (const std::string& good : {zipped("a.ifc", content, random), storedZip()}) {
    const std::string wanted = unzipped(good).content;
    for (std::size_t bit = 0; bit < 8 * good.size(); ++bit) {
      std::string zip = good;
      zip[bit / 8] = static_cast<char>(zip[bit / 8] ^ (1 << (bit % 8)));
      const Unzipped result = unzipped(zip);
      const bool isLost = result.name.empty();  // a directory of none
      EXPECT_TRUE(isLost || result.fault || result.content == wanted) << bit;
      EXPECT_LE(result.content.size(), wanted.size()) << bit;
    }
  }
}

TEST(Zip, GivesNoMoreThanItSays) {
  Random random(11);
  const std::string content(8000000, 'x');  // which is packed a thousand times smaller
  std::string zip = zipped("a.ifc", content, random);
  ASSERT_LT(zip.size(), 11000U);
  put(zip, zip.find("PK\1\2") + 24, 70000, 4);
  const Unzipped result = unzipped(zip);
  EXPECT_EQ(result.fault, ZipTrouble::damaged);
  EXPECT_LE(result.content.size(), 70000U);
}

TEST(Zip, StopsWhereItsReaderHasEnough) {
  Random random(12);
  const std::string content(1000000, 'x');
  const Unzipped result = unzipped(zipped("a.ifc", content, random), 100000);
  EXPECT_FALSE(result.fault);
  EXPECT_EQ(result.content, content.substr(0, 100000));
}

TEST(Zip, IsNotWholeWhereItsOutputRefuses) {
  Random random(13);
  const std::string content = randomContent(random, 300);
  const std::size_t size = zipped("a.ifc", content, random).size();
  for (std::size_t room = 0; room < size; ++room) {
    Received received;
    MemorySink memory(received, room);
    ZipSink sink(memory, "a.ifc");
    sink.write(content.data(), content.size());
    EXPECT_FALSE(sink.finish()) << room;
    EXPECT_EQ(received.refusals, 1U) << room;
    EXPECT_FALSE(sink.isTooLarge());
  }
}

TEST(Zip, IsKnownByItsStart) {
  EXPECT_TRUE(isZip("PK\3\4"));
  EXPECT_TRUE(isZip(storedZip()));
  for (const std::string_view start : {"", "PK\3", "PK\5\6    ", "ISO-10303-21;"}) {
    EXPECT_FALSE(isZip(start)) << start;
  }
}

}  // namespace
}  // namespace exportifc::cli
