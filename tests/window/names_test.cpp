// Window names: canonical display names, constant names, aliases, letter
// case and the truncation rule.
#include "libdsp.h"

#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <utility>

namespace {

std::string with_case(std::string s, int (*f)(int))
{
    for (char &c : s) c = static_cast<char>(f(static_cast<unsigned char>(c)));
    return s;
}

int32_t type_of(const std::string &name)
{
    int32_t type = -7;
    EXPECT_EQ(dsp_window_from_str(name.c_str(), &type), 0) << name;
    return type;
}

TEST(WindowNames, WholeNamesParseInAnyCase)
{
    const char *const canonical[] = {"Uniform", "Bartlett", "Hann", "Hamming", "Blackman", "Blackman_Harris3",
                                     "Blackman_Harris4", "Gausstop", "Flat4", "Flattop", "Flat6", "Flat7", "P501",
                                     "P601", "Kaiser70", "Kaiser80", "Kaiser90", "Kaiser100", "Kaiser110",
                                     "Kaiser120", "Gauss60", "Gauss70", "Gauss80", "Riemann"};
    for (int32_t type = 0; type < 24; ++type) {
        char buf[32];
        ASSERT_EQ(dsp_window_to_str(type, buf, sizeof buf), 0);
        EXPECT_STREQ(buf, canonical[type]);
        // Every canonical name has its constant name in the header's spelling.
        for (const std::string &name : {std::string(buf), with_case(buf, std::toupper), with_case(buf, std::tolower),
                                        "DSP_WINDOW_" + with_case(buf, std::toupper), "dsp_window_" + with_case(buf, std::tolower)})
            EXPECT_EQ(type_of(name), type);
    }
    // Other display and constant names.
    const std::pair<const char *, int32_t> aliases[] = {
        {"LOWLEAK", DSP_WINDOW_LOWLEAK}, {"Rectangular", DSP_WINDOW_RECTANGULAR}, {"p401", DSP_WINDOW_P401},
        {"Sinc_Lobe", DSP_WINDOW_SINC_LOBE}, {"DSP_WINDOW_P000", DSP_WINDOW_P000},
        {"Dsp_Window_Triangular", DSP_WINDOW_TRIANGULAR}};
    for (const auto &[name, type] : aliases) EXPECT_EQ(type_of(name), type);
    // Anything else fails and sets the type to 0.
    for (const char *text : {"Hann ", " Hann", "Han", "Hanning", "", "DSP_WINDOW_", "Tukey"}) {
        int32_t type = 5;
        EXPECT_EQ(dsp_window_from_str(text, &type), -1) << '"' << text << '"';
        EXPECT_EQ(type, 0);
    }
    int32_t type = 5;
    EXPECT_EQ(dsp_window_from_str(nullptr, &type), -1);
    EXPECT_EQ(type, 5);
    EXPECT_EQ(dsp_window_from_str("Hann", nullptr), -1);
}

TEST(WindowNames, ToStringCutsAndTerminates)
{
    // The name is cut to len - 1 characters and terminated; an unnamed type
    // leaves "" and len 0 leaves the buffer alone.
    const struct {
        int32_t type, len, status;
        const char *text;
    } cases[] = {{DSP_WINDOW_FLATTOP, 4, 0, "Fla"}, {DSP_WINDOW_HANN, 1, 0, ""}, {DSP_WINDOW_HANN, 5, 0, "Hann"},
                 {24, 8, -1, ""}, {25, 8, -1, ""}, {-1, 8, -1, ""}, {100, 8, -1, ""}, {DSP_WINDOW_HANN, 0, -1, "xxxxxxx"}};
    for (const auto &c : cases) {
        char buf[8] = "xxxxxxx";
        EXPECT_EQ(dsp_window_to_str(c.type, buf, c.len), c.status) << c.type << ' ' << c.len;
        EXPECT_STREQ(buf, c.text);
    }
    EXPECT_EQ(dsp_window_to_str(DSP_WINDOW_HANN, nullptr, 8), -1);
}

}  // namespace
