// The table generator stops at each kind of breach, with the file, the line and the cure.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/generator.h"

namespace {

class GenEncodings : public testing::Test {
 protected:
  void breach(const std::string& name, const std::string& from, const std::string& to, const std::string& sentence,
              const std::string& at = "") const {
    generator_.expectBreach(name, from, to, sentence, at);
  }

  test::GeneratorCopy generator_{GEN_ENCODINGS, "encodings", {"veldnls", "encodings"}};
};

TEST_F(GenEncodings, TheTextAsItStandsGivesTheSameBytesTwice) {
  generator_.expectSameBytesTwice({"veldnls/cei.h", "encodings/rows.inc", "encodings/trie.inc",
                                   "encodings/families.inc", "encodings/literals.inc", "encodings/ebcdic_groups.inc",
                                   "encodings/mib_enums.inc", "encodings/dbcs_types.inc",
                                   "encodings/dbcs_languages.inc"});
}

TEST_F(GenEncodings, MissingFile) {
  std::filesystem::remove(generator_.data("families.tsv"));
  generator_.expectStopAt("families.tsv", "can't be opened");
}

// Rows.

TEST_F(GenEncodings, RowGone) { breach("rows.tsv", "\n229\t", "\n# 229\t", "has 229 rows; it must have 230"); }

TEST_F(GenEncodings, RowOutOfOrder) { breach("rows.tsv", "\n28\t0", "\n29\t0", "expected 28", "rows.tsv:30"); }

TEST_F(GenEncodings, FieldLost) { breach("rows.tsv", "\twlt1\t", "\t", "has 17 fields; it must have 18"); }

TEST_F(GenEncodings, ClassCount) {
  breach("rows.tsv", "\n114\t0\t0x1\t0x20\t0x1A\t1", "\n114\t5\t0x1\t0x20\t0x1A\t2",
         "class 0 has 148 rows; it must have 149");
}

TEST_F(GenEncodings, FlagMissing) {
  breach("rows.tsv", "\n114\t0\t0x1", "\n114\t0\t0x0", "the row needs flag 0x1 or 0x8", "rows.tsv:116");
}

TEST_F(GenEncodings, FlagOfAVacantRow) {
  breach("rows.tsv", "\n94\t0\t0x0", "\n94\t0\t0x1", "neither flag 0x1 nor 0x8");
}

TEST_F(GenEncodings, BothFlags) { breach("rows.tsv", "\n114\t0\t0x1", "\n114\t0\t0x9", "stand together in row 204"); }

TEST_F(GenEncodings, UnknownFlag) { breach("rows.tsv", "\n114\t0\t0x1", "\n114\t0\t0x3", "of the bits 0x1, 0x8"); }

TEST_F(GenEncodings, MarksOfAnotherRow) {
  breach("rows.tsv", "\n64\t0\t0x1", "\n64\t0\t0x11", "flag 0x10 belongs to whebrew and warabic");
}

TEST_F(GenEncodings, Blank) {
  breach("rows.tsv", "\n97\t0\t0x8\t0x40", "\n97\t0\t0x8\t0x20", "padChar of this row is 0x40");
}

TEST_F(GenEncodings, Substitution) {
  breach("rows.tsv", "\n20\t1\t0x1\t0x20\t0xEFBFBD", "\n20\t1\t0x1\t0x20\t0x1A",
         "substitution of this row is 0xEFBFBD");
}

TEST_F(GenEncodings, UnitSize) {
  breach("rows.tsv", "\n134\t5\t0x1\t0x20\t0x1A\t4", "\n134\t5\t0x1\t0x20\t0x1A\t2", "unitSize of this row is 4");
}

TEST_F(GenEncodings, TextTooLong) {
  breach("rows.tsv", "\twlatin1\t", "\twestern-latin-1\t", "name has 15 units; shorten it to 13", "rows.tsv:64");
}

TEST_F(GenEncodings, TextNotPlain) {
  breach("rows.tsv", "Western (Windows)", "Western\xC2\xA0(Windows)", "must be printable ASCII");
}

TEST_F(GenEncodings, TextWithABlankBehind) {
  breach("rows.tsv", "\tWestern (Windows)\t", "\tWestern (Windows) \t", "without blanks around it");
}

TEST_F(GenEncodings, NumbersInCcsid) {
  breach("rows.tsv", "\tCp437\t437\t", "\tCp437\t43A\t", "ccsid must be decimal digits");
}

TEST_F(GenEncodings, IdentifierForm) {
  breach("rows.tsv", "\tU_ROMAN8_CE\t", "\tU_Roman8_CE\t", "identifier must be U_..._CE");
}

TEST_F(GenEncodings, IdentifierTwice) {
  breach("rows.tsv", "\tU_ROMAN8_CE\t", "\tU_LATIN1_CE\t", "two rows would share a macro", "rows.tsv:116");
}

TEST_F(GenEncodings, ShortNameTwice) {
  breach("rows.tsv", "\trom8\t", "\tlat1\t", "shortName \"lat1\" is taken", "rows.tsv:116");
}

TEST_F(GenEncodings, ShortNameOfThreeUnits) { breach("rows.tsv", "\trom8\t", "\trom\t", "shortName has four units"); }

TEST_F(GenEncodings, ShortNameGone) { breach("rows.tsv", "\trom8\t", "\t\t", "vacant rows have an empty shortName"); }

TEST_F(GenEncodings, NameTwice) { breach("rows.tsv", "\troman8\t", "\tLATIN1\t", "name \"LATIN1\" is taken"); }

TEST_F(GenEncodings, NameWithoutIdentifier) {
  breach("rows.tsv", "\tU_ROMAN8_CE\t", "\t\t", "a row has both name and identifier, or neither");
}

TEST_F(GenEncodings, BaseOfAnotherBase) {
  breach("rows.tsv", "\t62\t2004\t", "\t29\t2004\t", "baseCei must name a row that is its own base");
}

TEST_F(GenEncodings, BaseOutsideTheTable) {
  breach("rows.tsv", "\t62\t2004\t", "\t230\t2004\t", "number outside 1 to 229: 230");
}

TEST_F(GenEncodings, LengthExceptionThatIsNone) {
  breach("length-exceptions.tsv", "133\tccsid\t4", "133\tccsid\t3", "agrees with the text; remove the line");
}

TEST_F(GenEncodings, LengthExceptionTwice) {
  breach("length-exceptions.tsv", "133\tccsid\t4", "133\tccsid\t5\n133\tccsid\t4",
         "the length of ccsid in row 133 stands twice; remove one", "length-exceptions.tsv:4");
}

TEST_F(GenEncodings, LengthExceptionOfNoColumn) {
  breach("length-exceptions.tsv", "133\tccsid", "133\tccsids", "no such column: ccsids");
}

// Profiles and aliases.

TEST_F(GenEncodings, ProfileGone) {
  breach("profiles.tsv", "118 121 123\t", "118 123\t", "give it a line in profiles.tsv", "rows.tsv:123");
}

TEST_F(GenEncodings, ProfileTwice) {
  breach("profiles.tsv", "118 121 123\t", "118 121 123 117\t", "row 117 has a profile already");
}

TEST_F(GenEncodings, ProfileOfASingleByteRow) {
  breach("profiles.tsv", "118 121 123\t", "118 121 123 62\t", "those with flag 0x10 and no others have a profile",
         "rows.tsv");
}

TEST_F(GenEncodings, ProfileOfAnAlias) {
  breach("profiles.tsv", "118 121 123\t", "118 121 123 7\t", "aliases take the profile of their model");
}

TEST_F(GenEncodings, ProfileWithoutDoubleByteSet) {
  breach("profiles.tsv", "118 121 123\t0\t17", "118 121 123\t0\t0", "has a doubleByteSet above 0", "rows.tsv");
}

TEST_F(GenEncodings, StructureAgainstClass) {
  breach("profiles.tsv", "118 121 123\t0", "118 121 123\t1", "structure 1 belongs to class 4", "rows.tsv");
}

TEST_F(GenEncodings, ShiftInAStatelessRow) {
  breach("profiles.tsv", "118 121 123\t0\t17\t3\t-\t-", "118 121 123\t0\t17\t3\t0E\t0F",
         "shift sequences belong to class 4", "rows.tsv");
}

TEST_F(GenEncodings, ShiftsOfTwoLengths) {
  breach("profiles.tsv", "\t0A42\t0A41", "\t0A42\t0A", "both shift sequences have one length");
}

TEST_F(GenEncodings, RangeBackwards) {
  breach("profiles.tsv", "81-9F E0-FC", "9F-81 E0-FC", "a range runs from a byte above 0");
}

TEST_F(GenEncodings, FiveRanges) {
  breach("profiles.tsv", "81-9F E0-FC", "81-82 83-84 85-86 87-88 89-8A", "at most four ranges fit");
}

TEST_F(GenEncodings, MarksChanged) {
  breach("profiles.tsv", "\tFD\tFE\t", "\tFE\tFD\t", "holds the marks FD and FE", "rows.tsv");
}

TEST_F(GenEncodings, UnitSizeWithoutRoomForShifts) {
  breach("narrow-rows.tsv", "155\t4", "# 155\t4", "unitSize of this row is 6", "rows.tsv:157");
}

TEST_F(GenEncodings, NarrowRowThatIsNot) {
  breach("narrow-rows.tsv", "155\t4", "155\t4\n156\t6", "remove it from narrow-rows.tsv", "rows.tsv:158");
}

TEST_F(GenEncodings, NarrowRowOfAnotherClass) {
  breach("narrow-rows.tsv", "155\t4", "155\t4\n134\t2", "only rows of class 4 that are no aliases",
         "narrow-rows.tsv:4");
}

TEST_F(GenEncodings, NarrowRowOfAnAlias) {
  breach("narrow-rows.tsv", "155\t4", "155\t4\n3\t4", "only rows of class 4 that are no aliases", "narrow-rows.tsv:4");
}

TEST_F(GenEncodings, NarrowRowTwice) {
  breach("narrow-rows.tsv", "155\t4", "155\t2\n155\t4", "row 155 stands twice; remove one", "narrow-rows.tsv:4");
}

TEST_F(GenEncodings, AliasModelGone) {
  breach("alias-models.tsv", "5\t152", "# 5\t152", "give it a line in profiles.tsv", "rows.tsv:7");
}

TEST_F(GenEncodings, AliasModelNotNeeded) {
  breach("alias-models.tsv", "5\t152", "5\t152\n6\t137", "the first cell of its type; remove the line");
}

TEST_F(GenEncodings, AliasUnlikeItsModel) {
  breach("alias-models.tsv", "5\t152", "5\t132", "an alias has the class, unitSize and baseCei of row 132",
         "rows.tsv:7");
}

TEST_F(GenEncodings, AliasWithForeignFlags) {
  breach("rows.tsv", "\n6\t5\t0x1\t0x20\t0x1A", "\n6\t5\t0x8\t0x40\t0x3F", "an alias has the flags of row 138",
         "rows.tsv:8");
}

TEST_F(GenEncodings, AliasWithAName) {
  breach("rows.tsv", "\n5\t4\t0x8\t0x40\t0x3F\t4\t    \t\t", "\n5\t4\t0x8\t0x40\t0x3F\t4\t    \tjis\t",
         "a row has both name and identifier, or neither");
}

TEST_F(GenEncodings, AliasWithAText) {
  breach("rows.tsv", "\n5\t4\t0x8\t0x40\t0x3F\t4\t    \t\t\t", "\n5\t4\t0x8\t0x40\t0x3F\t4\t    \t\tJIS\t",
         "an alias has no text but its blank shortName");
}

// The name index.

TEST_F(GenEncodings, TextOfTwoRows) {
  breach("rows.tsv", "HP Roman8\t", "EBCDIC 037-US\t",
         "\"EBCDIC 037-US\" stands in row 78 too; change one, or name the answer in keys-shared.tsv", "rows.tsv:116");
}

TEST_F(GenEncodings, KeyCount) { breach("rows.tsv", "HP Roman8\t", "\t", "has 1728 keys; it must have 1729"); }

TEST_F(GenEncodings, ExtraKeyGone) { breach("keys-extra.tsv", "1\tIBM\n", "", "has 424 keys; it must have 425"); }

TEST_F(GenEncodings, ExtraKeyTwice) {
  breach("keys-extra.tsv", "1\tIBM\n", "1\tFACOM\n", "\"FACOM\" stands twice; remove one", "keys-extra.tsv:3");
}

TEST_F(GenEncodings, ExtraKeyInLowerCase) {
  breach("keys-extra.tsv", "1\tIBM\n", "1\tIbm\n", "keys are upper case: \"Ibm\"", "keys-extra.tsv:2");
}

TEST_F(GenEncodings, ExtraKeyThatIsAColumnText) {
  breach("keys-extra.tsv", "1\tIBM\n", "62\tWLATIN1\n", "\"WLATIN1\" is a column text; remove the line");
}

TEST_F(GenEncodings, KeyOfTheUtf16Alias) { breach("keys-extra.tsv", "1\tIBM\n", "19\tIBM\n", "no key answers 19"); }

TEST_F(GenEncodings, KeyValueOutsideTheTable) {
  breach("keys-extra.tsv", "1\tIBM\n", "230\tIBM\n", "number outside 1 to 229: 230");
}

TEST_F(GenEncodings, SharedTextThatIsNot) {
  breach("keys-shared.tsv", "25\t1200\n", "25\t1201\n", "\"1201\" does not stand in two rows; remove the line");
}

TEST_F(GenEncodings, SharedTextWithAForeignAnswer) {
  breach("keys-shared.tsv", "25\t1200\n", "26\t1200\n", "the answer is none of the rows with this text");
}

TEST_F(GenEncodings, SharedTextMissing) {
  breach("keys-shared.tsv", "25\t1200\n", "", "has 136 keys; it must have 137");
}

TEST_F(GenEncodings, SharedTextThatIsLeftOut) {
  breach("keys-left-out.txt", "U_UNICODE_CE", "1200", "\"1200\" is left out of the index", "keys-shared.tsv:2");
}

TEST_F(GenEncodings, LeftOutTextThatIsNoText) {
  breach("keys-left-out.txt", "U_UNICODE_CE", "U_UNICODES_CE", "is no column text; remove the line");
}

TEST_F(GenEncodings, LeftOutTextMissing) {
  breach("keys-left-out.txt", "U_UNICODE_CE\n", "", "has 56 texts; it must have 57");
}

TEST_F(GenEncodings, TextThatWouldAnswerTheUtf16Alias) {
  breach("rows.tsv", "\tUTF-16\t1200\t1200", "\tUTF-16 any\t1200\t1200", "would answer 19", "rows.tsv:21");
}

TEST_F(GenEncodings, GroupKeyThatIsAnotherKey) {
  breach("keys-groups.tsv", "SYSTEM", "IBM", "\"IBM\" is a key in keys-extra.tsv", "keys-groups.tsv:2");
}

TEST_F(GenEncodings, GroupValue) { breach("keys-groups.tsv", "231\t", "239\t", "number outside 231 to 238: 239"); }

// Relations.

TEST_F(GenEncodings, LiteralThatARowHas) {
  breach("lookup-literals.tsv", "2\tUNICODE\t", "2\tUTF-16\t", "the literal key is never reached",
         "lookup-literals.tsv:3");
}

TEST_F(GenEncodings, GroupOfTwoEntries) {
  breach("ebcdic-groups.tsv", "203\t14", "106\t14", "row 106 is in two", "ebcdic-groups.tsv:3");
}

TEST_F(GenEncodings, GroupOfAnAsciiRow) {
  breach("ebcdic-groups.tsv", "203\t14", "62\t14", "an encoding of a group has flag 0x8", "ebcdic-groups.tsv:2");
}

TEST_F(GenEncodings, GroupPairs) { breach("ebcdic-groups.tsv", "203\t14\n", "", "has 112 pairs; it must have 113"); }

TEST_F(GenEncodings, MibOutOfOrder) { breach("mib-enums.tsv", "4\t29\n", "3\t28\n", "sorted by MIBenum"); }

TEST_F(GenEncodings, MibAgainstTheColumn) {
  breach("mib-enums.tsv", "4\t29\n", "4\t30\n", "the column mibEnum of row 30 has another number");
}

TEST_F(GenEncodings, MibOfARowThatIsNotIndexed) {
  breach("rows.tsv", "\t62\t0\tx-MacRoman", "\t62\t2027\tx-MacRoman", "mibEnum 2027 has no line in mib-enums.tsv");
}

TEST_F(GenEncodings, MibPairs) { breach("mib-enums.tsv", "2009\t42\n", "", "has 54 pairs; it must have 55"); }

TEST_F(GenEncodings, TypeOutOfOrder) { breach("dbcs-types.tsv", "\n2\tFACOM", "\n3\tFACOM", "expected 2"); }

TEST_F(GenEncodings, TypeCellOfAnAlias) {
  breach("dbcs-types.tsv", "0\t129\t139", "0\t9\t139", "a cell is an encoding and not an alias");
}

TEST_F(GenEncodings, TypeColumnNone) {
  breach("dbcs-types.tsv", "0x2041\t0\t129", "0x2041\t129\t129", "the column NONE holds 0");
}

TEST_F(GenEncodings, TypeColumnUnknown) {
  breach("dbcs-types.tsv", "124\t117\t0\n", "124\t117\t25\n", "the column UNKNOWN holds 0 but for");
}

TEST_F(GenEncodings, TypeCount) {
  breach("dbcs-types.tsv", "\n23\tEUCT7", "\n# 23\tEUCT7", "has 23 types; it must have 24");
}

TEST_F(GenEncodings, LanguageColumn) {
  breach("dbcs-languages.tsv", "0x101", "0x107", "its low byte is a column of dbcs-types.tsv");
}

TEST_F(GenEncodings, LanguageNameTwice) { breach("dbcs-languages.tsv", "KANJI", "KOREAN", "the name KOREAN is taken"); }

TEST_F(GenEncodings, FamilyWithoutItsHead) {
  breach("families.tsv", "119\t119 159", "119\t159", "the head is a member of its family");
}

TEST_F(GenEncodings, MemberOfTwoFamilies) {
  breach("families.tsv", "119\t119 159", "119\t119 118", "row 118 is in two families");
}

TEST_F(GenEncodings, FamilyAgainstTheTypes) {
  breach("families.tsv", "119\t119 159\t4\t10", "119\t119 159\t4\t16", "the cell of this language and type");
}

}  // namespace
