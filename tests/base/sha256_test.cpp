#include "base/sha256.h"

#include "tests/support/test_program.h"

#include <gtest/gtest.h>

namespace mact {
namespace {

std::string Sha256Of(std::string_view bytes) {
    Sha256 hash;
    hash.Add(bytes);
    return hash.Digits();
}

struct HashCase {
    const char* Name;
    const char* Digits;
    std::string Bytes;
};
void PrintTo(const HashCase& given, std::ostream* out) {
    *out << given.Name;
}
// The examples of FIPS 180-4 and of the NIST's list of test vectors.
constexpr const char* LongerText = "abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmn"
                                   "hijklmnoijklmnopjklmnopqklmnopqrlmnopqrsmnopqrstnopqrstu";
constexpr const char* TwoBlocks = "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq";
const std::string Million(1'000'000, 'a');
const HashCase HashCases[] = {
    {"Nothing",    "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855", ""        },
    {"OneBlock",   "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad", "abc"     },
    {"TwoBlocks",  "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1", TwoBlocks },
    {"LongerText", "cf5b16a778af8380036ce59e7b0492370b249b11e8f07a51afac45037afee9d1", LongerText},
    {"Million",    "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0", Million   },
};

class Sha256Test : public testing::TestWithParam<HashCase> {};

TEST_P(Sha256Test, IsThatOfTheStandard) {
    EXPECT_EQ(Sha256Of(GetParam().Bytes), GetParam().Digits);
}

TEST_P(Sha256Test, DoesNotDependOnThePieces) {
    const std::string& bytes = GetParam().Bytes;
    for (const std::size_t length : {1U, 7U, 63U, 64U, 65U, 128U}) {
        Sha256 hash;
        for (std::size_t start = 0; start < bytes.size(); start += length)
            hash.Add(std::string_view(bytes).substr(start, length));
        EXPECT_EQ(hash.Digits(), GetParam().Digits) << length;
    }
}

INSTANTIATE_TEST_SUITE_P(Vectors, Sha256Test, testing::ValuesIn(HashCases),
                         [](const auto& given) { return given.param.Name; });

// Where the length just fits behind the bytes, and where it needs a block of its own; by sha256sum.
TEST(Sha256Ends, NeedABlockMoreFrom56BytesOn) {
    EXPECT_EQ(Sha256Of(std::string(55, 'a')),
              "9f4390f8d30c2dd92ec9f095b65e2b9ae9b0a925a5258e241c9f1e910f734318");
    EXPECT_EQ(Sha256Of(std::string(56, 'a')),
              "b35439a4ac6f0948b6d6f9e3c6af0f5f590ce20f1bde7090ef7970686ec6738a");
    EXPECT_EQ(Sha256Of(std::string(63, 'a')),
              "7d3e74a05d7db15bce4ad9ec0658ea98e3f06eeecf16b4c6fff2da457ddc2f34");
    EXPECT_EQ(Sha256Of(std::string(64, 'a')),
              "ffe054fe7ae0cb6dc65c3af9b61d5209f439851db43d0ba5997337df154668eb");
    EXPECT_EQ(Sha256Of(std::string(119, 'a')),
              "31eba51c313a5c08226adf18d4a359cfdfd8d2e816b13f4af952f7ea6584dcfb");
    EXPECT_EQ(Sha256Of(std::string(120, 'a')),
              "2f3d335432c70b580af0e8e1b3674a7c020d683aa5f73aaaedfdc55af904c21c");
}

class Sha256OfFileTest : public testing::Test, public TestProgram {};

TEST_F(Sha256OfFileTest, IsOfAllItsBytes) {
    WriteContent(DataFile("million"), std::string(1'000'000, 'a'));
    const Result<std::string> digits = Sha256OfFile(Files, DataFile("million"));
    ASSERT_TRUE(digits);
    EXPECT_EQ(*digits, "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST_F(Sha256OfFileTest, IsOfAFileThatIsReadInSeveralPieces) {
    WriteContent(DataFile("large"), std::string(std::size_t{2} << 20U, 'x') + "end"); // by sha256sum
    const Result<std::string> digits = Sha256OfFile(Files, DataFile("large"));
    ASSERT_TRUE(digits);
    EXPECT_EQ(*digits, "4d8aee25efc35cf701cb6e1f2ad8827b6c728ec8ea925edf91fb94150f47e13c");
}

TEST_F(Sha256OfFileTest, OfAMissingFileIsAFailure) {
    EXPECT_FALSE(Sha256OfFile(Files, DataFile("missing")));
    EXPECT_FALSE(std::filesystem::exists(DataFile("missing")));
}

} // namespace
} // namespace mact
