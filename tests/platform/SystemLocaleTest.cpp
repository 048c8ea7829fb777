#include "platform/SystemLocale.h"

#include "support/Environment.h"

#include <gtest/gtest.h>

#include <cctype>

namespace kintar::platform {
namespace {

using testing::Environment;

const DateTime moment = *DateTime::fromFields(2012, 3, 14, 17, 5, 0);

std::string both(const LocaleFormats& formats) {
    return formats.formatGeneralDate(moment);
}

TEST(SystemLocale, WritesYearsOfFourDigitsAndNoZone) {
    EXPECT_EQ(both(localeFormats("en-US").value()), "3/14/2012 5:05:00 PM");
    EXPECT_EQ(both(localeFormats("de-DE").value()), "14.03.2012 17:05:00");
    EXPECT_EQ(both(localeFormats("en_GB").value()), "14/03/2012 17:05:00");
    EXPECT_EQ(both(localeFormats("sv_SE.UTF-8").value()), "2012-03-14 17:05:00");
    EXPECT_EQ(both(localeFormats("iso").value()), "2012-03-14 17:05:00");
}

TEST(SystemLocale, TakesCAndPosixAsEnUs) {
    for (const char* name : {"C", "POSIX", "C.UTF-8"}) {
        EXPECT_EQ(both(localeFormats(name).value()), "3/14/2012 5:05:00 PM") << name;
    }
}

TEST(SystemLocale, KnowsNothingOfAnInventedName) {
    EXPECT_EQ(localeFormats("xx-invented"), std::nullopt);
    EXPECT_EQ(localeFormats(""), std::nullopt);
}

TEST(SystemLocale, LeavesOutDirectionMarksWordsAndOtherDigits) {
    EXPECT_EQ(both(localeFormats("ar_EG").value()), "14/3/2012 5:05:00 PM");
    EXPECT_EQ(both(localeFormats("bg_BG").value()), "14.03.2012 17:05:00");
    EXPECT_EQ(both(localeFormats("fr_CA").value()), "2012-03-14 17:05:00");
    EXPECT_EQ(both(localeFormats("fi_FI").value()), "14.3.2012 17.05.00");
    EXPECT_EQ(both(localeFormats("ko_KR").value()), "2012. 3. 14. PM 5:05:00");
}

TEST(SystemLocale, ReadsBackWhatItWritesInEveryLocaleOfTheSystem) {
    for (const char* name :
         {"ar_EG", "bg_BG", "cs_CZ", "da_DK", "de_DE", "el_GR", "en_US", "es_ES", "fa_IR", "fi_FI",
          "fr_CA", "fr_FR", "he_IL", "hi_IN", "hu_HU", "ja_JP", "ko_KR", "lt_LT", "nl_NL", "pl_PL",
          "pt_BR", "ru_RU", "sk_SK", "sv_SE", "th_TH", "tr_TR", "vi_VN", "zh_CN", "zh_TW"}) {
        const LocaleFormats formats = localeFormats(name).value();
        const std::string text = both(formats);
        EXPECT_EQ(formats.parse(text), moment) << name << ": " << text;
        for (const char c : text) {
            EXPECT_TRUE(std::isprint(static_cast<unsigned char>(c))) << name << ": " << text;
        }
    }
}

TEST(SystemLocale, ReadsTheTimeLocaleBeforeTheLanguage) {
    const Environment all("LC_ALL", std::nullopt);
    const Environment language("LANG", "en_US.UTF-8");
    const Environment time("LC_TIME", "de_DE.UTF-8");
    EXPECT_EQ(both(systemLocaleFormats()), "14.03.2012 17:05:00");
    const Environment over("LC_ALL", "en_GB.UTF-8");
    EXPECT_EQ(both(systemLocaleFormats()), "14/03/2012 17:05:00");
}

TEST(SystemLocale, FallsBackToEnUs) {
    const Environment all("LC_ALL", "xx_invented");
    EXPECT_EQ(both(systemLocaleFormats()), "3/14/2012 5:05:00 PM");
}

TEST(SystemLocale, MakesPatternsOfTheToolkitsPatterns) {
    EXPECT_EQ(shortDatePattern("d. MMM yy"), "d. MM yyyy");
    EXPECT_EQ(shortDatePattern("d.MM.yy '\xD0\xB3'."), "d.MM.yyyy");
    EXPECT_EQ(longTimePattern("'Klock' H.mm:ss (t)"), "H.mm.ss");
    EXPECT_EQ(longTimePattern("t AP h:mm:ss"), "AP h:mm:ss");
    EXPECT_EQ(longTimePattern("hh:mm:ss"), "HH:mm:ss");
}

} // namespace
} // namespace kintar::platform
