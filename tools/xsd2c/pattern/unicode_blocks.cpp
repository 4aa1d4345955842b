#include "xsd2c/pattern/char_classes.h"

namespace xsd2c {
namespace {

struct Block {
    char32_t first;
    char32_t last;
    std::string_view name;
};

// In the order of XML Schema 1.0 Datatypes, F.1.1. Some names stand for more than one range.
constexpr Block kBlocks[] = {
    {0x0000, 0x007F, "BasicLatin"},
    {0x0080, 0x00FF, "Latin-1Supplement"},
    {0x0100, 0x017F, "LatinExtended-A"},
    {0x0180, 0x024F, "LatinExtended-B"},
    {0x0250, 0x02AF, "IPAExtensions"},
    {0x02B0, 0x02FF, "SpacingModifierLetters"},
    {0x0300, 0x036F, "CombiningDiacriticalMarks"},
    {0x0370, 0x03FF, "Greek"},
    {0x0400, 0x04FF, "Cyrillic"},
    {0x0530, 0x058F, "Armenian"},
    {0x0590, 0x05FF, "Hebrew"},
    {0x0600, 0x06FF, "Arabic"},
    {0x0700, 0x074F, "Syriac"},
    {0x0780, 0x07BF, "Thaana"},
    {0x0900, 0x097F, "Devanagari"},
    {0x0980, 0x09FF, "Bengali"},
    {0x0A00, 0x0A7F, "Gurmukhi"},
    {0x0A80, 0x0AFF, "Gujarati"},
    {0x0B00, 0x0B7F, "Oriya"},
    {0x0B80, 0x0BFF, "Tamil"},
    {0x0C00, 0x0C7F, "Telugu"},
    {0x0C80, 0x0CFF, "Kannada"},
    {0x0D00, 0x0D7F, "Malayalam"},
    {0x0D80, 0x0DFF, "Sinhala"},
    {0x0E00, 0x0E7F, "Thai"},
    {0x0E80, 0x0EFF, "Lao"},
    {0x0F00, 0x0FFF, "Tibetan"},
    {0x1000, 0x109F, "Myanmar"},
    {0x10A0, 0x10FF, "Georgian"},
    {0x1100, 0x11FF, "HangulJamo"},
    {0x1200, 0x137F, "Ethiopic"},
    {0x13A0, 0x13FF, "Cherokee"},
    {0x1400, 0x167F, "UnifiedCanadianAboriginalSyllabics"},
    {0x1680, 0x169F, "Ogham"},
    {0x16A0, 0x16FF, "Runic"},
    {0x1780, 0x17FF, "Khmer"},
    {0x1800, 0x18AF, "Mongolian"},
    {0x1E00, 0x1EFF, "LatinExtendedAdditional"},
    {0x1F00, 0x1FFF, "GreekExtended"},
    {0x2000, 0x206F, "GeneralPunctuation"},
    {0x2070, 0x209F, "SuperscriptsandSubscripts"},
    {0x20A0, 0x20CF, "CurrencySymbols"},
    {0x20D0, 0x20FF, "CombiningMarksforSymbols"},
    {0x2100, 0x214F, "LetterlikeSymbols"},
    {0x2150, 0x218F, "NumberForms"},
    {0x2190, 0x21FF, "Arrows"},
    {0x2200, 0x22FF, "MathematicalOperators"},
    {0x2300, 0x23FF, "MiscellaneousTechnical"},
    {0x2400, 0x243F, "ControlPictures"},
    {0x2440, 0x245F, "OpticalCharacterRecognition"},
    {0x2460, 0x24FF, "EnclosedAlphanumerics"},
    {0x2500, 0x257F, "BoxDrawing"},
    {0x2580, 0x259F, "BlockElements"},
    {0x25A0, 0x25FF, "GeometricShapes"},
    {0x2600, 0x26FF, "MiscellaneousSymbols"},
    {0x2700, 0x27BF, "Dingbats"},
    {0x2800, 0x28FF, "BraillePatterns"},
    {0x2E80, 0x2EFF, "CJKRadicalsSupplement"},
    {0x2F00, 0x2FDF, "KangxiRadicals"},
    {0x2FF0, 0x2FFF, "IdeographicDescriptionCharacters"},
    {0x3000, 0x303F, "CJKSymbolsandPunctuation"},
    {0x3040, 0x309F, "Hiragana"},
    {0x30A0, 0x30FF, "Katakana"},
    {0x3100, 0x312F, "Bopomofo"},
    {0x3130, 0x318F, "HangulCompatibilityJamo"},
    {0x3190, 0x319F, "Kanbun"},
    {0x31A0, 0x31BF, "BopomofoExtended"},
    {0x3200, 0x32FF, "EnclosedCJKLettersandMonths"},
    {0x3300, 0x33FF, "CJKCompatibility"},
    {0x3400, 0x4DB5, "CJKUnifiedIdeographsExtensionA"},
    {0x4E00, 0x9FFF, "CJKUnifiedIdeographs"},
    {0xA000, 0xA48F, "YiSyllables"},
    {0xA490, 0xA4CF, "YiRadicals"},
    {0xAC00, 0xD7A3, "HangulSyllables"},
    {0xE000, 0xF8FF, "PrivateUse"},
    {0xF900, 0xFAFF, "CJKCompatibilityIdeographs"},
    {0xFB00, 0xFB4F, "AlphabeticPresentationForms"},
    {0xFB50, 0xFDFF, "ArabicPresentationForms-A"},
    {0xFE20, 0xFE2F, "CombiningHalfMarks"},
    {0xFE30, 0xFE4F, "CJKCompatibilityForms"},
    {0xFE50, 0xFE6F, "SmallFormVariants"},
    {0xFE70, 0xFEFE, "ArabicPresentationForms-B"},
    {0xFEFF, 0xFEFF, "Specials"},
    {0xFF00, 0xFFEF, "HalfwidthandFullwidthForms"},
    {0xFFF0, 0xFFFD, "Specials"},
    {0x10300, 0x1032F, "OldItalic"},
    {0x10330, 0x1034F, "Gothic"},
    {0x10400, 0x1044F, "Deseret"},
    {0x1D000, 0x1D0FF, "ByzantineMusicalSymbols"},
    {0x1D100, 0x1D1FF, "MusicalSymbols"},
    {0x1D400, 0x1D7FF, "MathematicalAlphanumericSymbols"},
    {0x20000, 0x2A6D6, "CJKUnifiedIdeographsExtensionB"},
    {0x2F800, 0x2FA1F, "CJKCompatibilityIdeographsSupplement"},
    {0xE0000, 0xE007F, "Tags"},
    {0xF0000, 0xFFFFD, "PrivateUse"},
    {0x100000, 0x10FFFD, "PrivateUse"},
};

}  // namespace

std::optional<CharSet> charsOfBlock(std::string_view name) {
    CharSet result;
    for (const Block &block : kBlocks) {
        if (block.name == name) result.add(block.first, block.last);
    }
    if (result.empty()) return std::nullopt;
    return result;
}

}  // namespace xsd2c
