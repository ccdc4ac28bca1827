/* Size of every public record, place of every field, in order, and type of every number and text, as callers compiled
 * against them rely on it (LP64). Included by one C and one C++ unit, which bring STATIC_CHECK and IS_TYPE. */
#include <stddef.h>

#include "veldnls/veldnls.h"

#define RECORD(type, bytes) STATIC_CHECK(sizeof(type) == (bytes), #type)
#define FIELD(type, field, offset) STATIC_CHECK(offsetof(type, field) == (offset), #type "." #field)
#define VALUE(type, field, offset, valueType) \
  FIELD(type, field, offset);                 \
  STATIC_CHECK(IS_TYPE(type, field, valueType), #type "." #field " is " #valueType)

/* clang-format off */

RECORD(NlsHandle, 24);
VALUE(NlsHandle, magic, 0, uint8_t[4]);
FIELD(NlsHandle, name, 8);
FIELD(NlsHandle, destroy, 16);

RECORD(NlsExtension, 56);
VALUE(NlsExtension, magic, 0, uint8_t[4]);
FIELD(NlsExtension, name, 8);
FIELD(NlsExtension, destroy, 16);
FIELD(NlsExtension, versionQuery, 24);
FIELD(NlsExtension, minimumVersionQuery, 32);
FIELD(NlsExtension, host, 40);
FIELD(NlsExtension, release, 48);

RECORD(NlsText60, 124);
VALUE(NlsText60, count, 0, int32_t);
VALUE(NlsText60, text, 4, char16_t[60]);

RECORD(NlsByteRange, 2);
VALUE(NlsByteRange, low, 0, uint8_t);
VALUE(NlsByteRange, high, 1, uint8_t);

RECORD(MultiByteProfile, 40);
VALUE(MultiByteProfile, structure, 0, uint32_t);
VALUE(MultiByteProfile, doubleByteSet, 4, uint32_t);
VALUE(MultiByteProfile, singleByteSet, 8, uint32_t);
VALUE(MultiByteProfile, shiftLength, 12, uint16_t);
VALUE(MultiByteProfile, shiftOut, 14, uint8_t[4]);
VALUE(MultiByteProfile, shiftIn, 18, uint8_t[4]);
VALUE(MultiByteProfile, doubleBlank, 22, uint8_t[2]);
FIELD(MultiByteProfile, leadRanges, 24);
FIELD(MultiByteProfile, trailRanges, 32);

RECORD(EncodingDescriptor, 552);
VALUE(EncodingDescriptor, cei, 0, int32_t);
VALUE(EncodingDescriptor, encodingClass, 4, int32_t);
VALUE(EncodingDescriptor, flags, 8, uint32_t);
VALUE(EncodingDescriptor, padChar, 12, uint32_t);
VALUE(EncodingDescriptor, substitution, 16, uint32_t);
VALUE(EncodingDescriptor, unitSize, 20, uint16_t);
VALUE(EncodingDescriptor, shortName, 22, char16_t[5]);
VALUE(EncodingDescriptor, shortNameLength, 32, int32_t);
VALUE(EncodingDescriptor, name, 36, char16_t[14]);
VALUE(EncodingDescriptor, nameLength, 64, int32_t);
VALUE(EncodingDescriptor, description, 68, char16_t[34]);
VALUE(EncodingDescriptor, descriptionLength, 136, int32_t);
VALUE(EncodingDescriptor, identifier, 140, char16_t[18]);
VALUE(EncodingDescriptor, identifierLength, 176, int32_t);
VALUE(EncodingDescriptor, longDescription, 180, char16_t[42]);
VALUE(EncodingDescriptor, longDescriptionLength, 264, int32_t);
VALUE(EncodingDescriptor, ianaName, 268, char16_t[32]);
VALUE(EncodingDescriptor, ianaNameLength, 332, int32_t);
VALUE(EncodingDescriptor, javaName, 336, char16_t[32]);
VALUE(EncodingDescriptor, javaNameLength, 400, int32_t);
VALUE(EncodingDescriptor, ccsid, 404, char16_t[6]);
VALUE(EncodingDescriptor, ccsidLength, 416, int32_t);
VALUE(EncodingDescriptor, codePage, 420, char16_t[6]);
VALUE(EncodingDescriptor, codePageLength, 432, int32_t);
FIELD(EncodingDescriptor, profile, 436);
VALUE(EncodingDescriptor, baseCei, 476, int32_t);
VALUE(EncodingDescriptor, mibEnum, 480, int32_t);
VALUE(EncodingDescriptor, preferredName, 484, char16_t[32]);
VALUE(EncodingDescriptor, preferredNameLength, 548, int32_t);

RECORD(CharacterRecord, 32);
VALUE(CharacterRecord, code, 0, uint32_t);
VALUE(CharacterRecord, category, 4, uint32_t);
VALUE(CharacterRecord, bidiClass, 8, uint32_t);
VALUE(CharacterRecord, combiningClass, 12, uint32_t);
VALUE(CharacterRecord, upper, 16, uint32_t);
VALUE(CharacterRecord, lower, 20, uint32_t);
VALUE(CharacterRecord, decompositionBase, 24, uint32_t);
VALUE(CharacterRecord, decompositionMark, 28, uint32_t);

RECORD(LocaleEncodings, 40);
VALUE(LocaleEncodings, index, 0, int32_t);
FIELD(LocaleEncodings, primary, 8);
VALUE(LocaleEncodings, primaryCount, 16, int32_t);
FIELD(LocaleEncodings, secondary, 24);
VALUE(LocaleEncodings, secondaryCount, 32, int32_t);

RECORD(LocaleNameRow, 176);
VALUE(LocaleNameRow, posixName, 0, char16_t[6]);
VALUE(LocaleNameRow, posixNameLength, 12, int32_t);
VALUE(LocaleNameRow, languageCode, 16, char16_t[2]);
VALUE(LocaleNameRow, languageCodeLength, 20, int32_t);
VALUE(LocaleNameRow, countryCode, 24, char16_t[2]);
VALUE(LocaleNameRow, countryCodeLength, 28, int32_t);
VALUE(LocaleNameRow, longName, 32, char16_t[32]);
VALUE(LocaleNameRow, longNameLength, 96, int32_t);
VALUE(LocaleNameRow, languageName, 100, char16_t[32]);
VALUE(LocaleNameRow, languageNameLength, 164, int32_t);
VALUE(LocaleNameRow, localeId, 168, int32_t);
VALUE(LocaleNameRow, windowsLcid, 172, uint16_t);

RECORD(TranscodeOptions, 16);
VALUE(TranscodeOptions, words, 0, uint32_t[4]);

RECORD(TranscodeProgress, 24);
VALUE(TranscodeProgress, flags, 0, uint32_t);
VALUE(TranscodeProgress, consumed, 4, uint32_t);
VALUE(TranscodeProgress, pending, 8, uint8_t);
VALUE(TranscodeProgress, heldCount, 12, uint32_t);
VALUE(TranscodeProgress, held, 16, uint8_t[8]);

RECORD(NlsCodePair, 4);
VALUE(NlsCodePair, key, 0, uint16_t);
VALUE(NlsCodePair, value, 2, uint16_t);

RECORD(CodeOverlay, 16);
VALUE(CodeOverlay, count, 0, uint32_t);
FIELD(CodeOverlay, pairs, 8);

RECORD(NlsPairTable, 16);
VALUE(NlsPairTable, count, 0, uint32_t);
FIELD(NlsPairTable, pairs, 8);

RECORD(PipelineSide, 120);
VALUE(PipelineSide, cei, 0, int32_t);
VALUE(PipelineSide, peerCei, 4, int32_t);
VALUE(PipelineSide, swapInput, 8, uint8_t);
VALUE(PipelineSide, swapOutput, 9, uint8_t);
VALUE(PipelineSide, padChar, 12, uint32_t);
VALUE(PipelineSide, unitSize, 16, uint8_t);
FIELD(PipelineSide, byteMap, 24);
FIELD(PipelineSide, stage, 32);
FIELD(PipelineSide, directionMarks, 40);
FIELD(PipelineSide, sourceProfile, 40);
FIELD(PipelineSide, targetProfile, 48);
FIELD(PipelineSide, pairs, 56);
FIELD(PipelineSide, singleMap, 64);
FIELD(PipelineSide, toUnicode, 64);
FIELD(PipelineSide, fromUnicode, 72);
FIELD(PipelineSide, kanaPairs, 80);
FIELD(PipelineSide, overlay, 88);
FIELD(PipelineSide, scan, 96);
VALUE(PipelineSide, encodingClass, 104, int32_t);
VALUE(PipelineSide, substitution, 108, uint32_t);
FIELD(PipelineSide, options, 112);

RECORD(TranscodingPipeline, 328);
VALUE(TranscodingPipeline, magic, 0, uint8_t[4]);
FIELD(TranscodingPipeline, name, 8);
FIELD(TranscodingPipeline, destroy, 16);
FIELD(TranscodingPipeline, nls, 24);
FIELD(TranscodingPipeline, transcode, 32);
FIELD(TranscodingPipeline, transcodeResumable, 40);
VALUE(TranscodingPipeline, sourceCei, 48, int32_t);
VALUE(TranscodingPipeline, targetCei, 52, int32_t);
VALUE(TranscodingPipeline, twoStage, 56, uint8_t);
FIELD(TranscodingPipeline, source, 64);
FIELD(TranscodingPipeline, target, 184);
VALUE(TranscodingPipeline, flags, 304, uint32_t);
FIELD(TranscodingPipeline, options, 308);

RECORD(UserCharacterTable, 360);
VALUE(UserCharacterTable, heading, 0, uint8_t[24]);
VALUE(UserCharacterTable, subheading, 24, uint8_t[24]);
VALUE(UserCharacterTable, codeA, 48, uint8_t[2]);
VALUE(UserCharacterTable, codeB, 50, uint8_t[2]);
VALUE(UserCharacterTable, columnCount, 52, int32_t);
VALUE(UserCharacterTable, characterCount, 56, int32_t);
VALUE(UserCharacterTable, columnBytes, 60, int32_t);
FIELD(UserCharacterTable, columns, 64);
FIELD(UserCharacterTable, next, 256);
VALUE(UserCharacterTable, ceis, 264, int32_t[24]);

RECORD(CodePageModule, 64);
VALUE(CodePageModule, magic, 0, uint8_t[4]);
FIELD(CodePageModule, name, 8);
FIELD(CodePageModule, destroy, 16);
FIELD(CodePageModule, versionQuery, 24);
FIELD(CodePageModule, minimumVersionQuery, 32);
FIELD(CodePageModule, host, 40);
FIELD(CodePageModule, release, 48);
FIELD(CodePageModule, pool, 56);

RECORD(SingleByteModule, 96);
VALUE(SingleByteModule, magic, 0, uint8_t[4]);
FIELD(SingleByteModule, name, 8);
FIELD(SingleByteModule, destroy, 16);
FIELD(SingleByteModule, versionQuery, 24);
FIELD(SingleByteModule, minimumVersionQuery, 32);
FIELD(SingleByteModule, host, 40);
FIELD(SingleByteModule, release, 48);
FIELD(SingleByteModule, pool, 56);
FIELD(SingleByteModule, setupByteToByte, 64);
FIELD(SingleByteModule, setupByteToUnicode, 72);
FIELD(SingleByteModule, setupWideToByte, 80);
FIELD(SingleByteModule, setupUtf8ToByte, 88);

RECORD(MultiByteModule, 160);
VALUE(MultiByteModule, magic, 0, uint8_t[4]);
FIELD(MultiByteModule, name, 8);
FIELD(MultiByteModule, destroy, 16);
FIELD(MultiByteModule, versionQuery, 24);
FIELD(MultiByteModule, minimumVersionQuery, 32);
FIELD(MultiByteModule, host, 40);
FIELD(MultiByteModule, release, 48);
FIELD(MultiByteModule, pool, 56);
FIELD(MultiByteModule, setupByteToMultibyte, 64);
FIELD(MultiByteModule, setupMultibyteToByte, 72);
FIELD(MultiByteModule, setupUtf16ToMultibyte, 80);
FIELD(MultiByteModule, setupMultibyteToUtf16, 88);
FIELD(MultiByteModule, setupUtf32ToMultibyte, 96);
FIELD(MultiByteModule, setupMultibyteToUtf32, 104);
FIELD(MultiByteModule, setupUtf8ToMultibyte, 112);
FIELD(MultiByteModule, setupMultibyteToUtf8, 120);
FIELD(MultiByteModule, setupUtfeToMultibyte, 128);
FIELD(MultiByteModule, setupMultibyteToUtfe, 136);
FIELD(MultiByteModule, nls, 144);
FIELD(MultiByteModule, gbModule, 152);

RECORD(Gb18030Module, 80);
VALUE(Gb18030Module, magic, 0, uint8_t[4]);
FIELD(Gb18030Module, name, 8);
FIELD(Gb18030Module, destroy, 16);
FIELD(Gb18030Module, versionQuery, 24);
FIELD(Gb18030Module, minimumVersionQuery, 32);
FIELD(Gb18030Module, host, 40);
FIELD(Gb18030Module, release, 48);
FIELD(Gb18030Module, pool, 56);
FIELD(Gb18030Module, fromUnicode, 64);
FIELD(Gb18030Module, toUnicode, 72);

RECORD(LocaleDateTime, 5708);
VALUE(LocaleDateTime, dayNames, 0, NlsText60[7]);
VALUE(LocaleDateTime, dayAbbreviations, 868, NlsText60[7]);
VALUE(LocaleDateTime, monthNames, 1736, NlsText60[12]);
VALUE(LocaleDateTime, monthAbbreviations, 3224, NlsText60[12]);
VALUE(LocaleDateTime, dateFormatShort, 4712, NlsText60);
VALUE(LocaleDateTime, dateFormatMedium, 4836, NlsText60);
VALUE(LocaleDateTime, dateFormatLong, 4960, NlsText60);
VALUE(LocaleDateTime, dateTimeFormat, 5084, NlsText60);
VALUE(LocaleDateTime, timeFormat24, 5208, NlsText60);
VALUE(LocaleDateTime, timeFormat12, 5332, NlsText60);
VALUE(LocaleDateTime, amText, 5456, NlsText60);
VALUE(LocaleDateTime, pmText, 5580, NlsText60);
VALUE(LocaleDateTime, dateSeparator, 5704, char16_t);
VALUE(LocaleDateTime, timeSeparator, 5706, char16_t);

RECORD(LocaleNumber, 252);
VALUE(LocaleNumber, numberPattern, 0, NlsText60);
VALUE(LocaleNumber, numberGrouping, 124, NlsText60);
VALUE(LocaleNumber, decimalPoint, 248, char16_t);
VALUE(LocaleNumber, groupSeparator, 250, char16_t);

RECORD(LocaleCurrency, 628);
VALUE(LocaleCurrency, currencyPattern, 0, NlsText60);
VALUE(LocaleCurrency, currencyPatternInternational, 124, NlsText60);
VALUE(LocaleCurrency, currencyGrouping, 248, NlsText60);
VALUE(LocaleCurrency, currencySymbol, 372, NlsText60);
VALUE(LocaleCurrency, currencyCode, 496, NlsText60);
VALUE(LocaleCurrency, currencyDecimalPoint, 620, char16_t);
VALUE(LocaleCurrency, currencyGroupSeparator, 622, char16_t);
VALUE(LocaleCurrency, currencyDigits, 624, uint16_t);
VALUE(LocaleCurrency, currencyDigitsInternational, 626, uint16_t);

RECORD(LocalePercent, 128);
VALUE(LocalePercent, percentPattern, 0, NlsText60);
VALUE(LocalePercent, percentSign, 124, char16_t);

RECORD(LocaleIdentity, 508);
VALUE(LocaleIdentity, posixName, 0, NlsText60);
VALUE(LocaleIdentity, languageCode, 124, char16_t[2]);
VALUE(LocaleIdentity, countryCode, 128, char16_t[2]);
VALUE(LocaleIdentity, languageName, 132, NlsText60);
VALUE(LocaleIdentity, countryName, 256, NlsText60);
VALUE(LocaleIdentity, paperName, 380, NlsText60);
VALUE(LocaleIdentity, paperHeight, 504, uint16_t);
VALUE(LocaleIdentity, paperWidth, 506, uint16_t);

RECORD(LocaleItem, 162);
VALUE(LocaleItem, length, 0, uint16_t);
VALUE(LocaleItem, text, 2, char[160]);

RECORD(LocaleRecord, 30740);
VALUE(LocaleRecord, requestedName, 0, NlsText60);
VALUE(LocaleRecord, reserved2, 124, uint8_t[96]);
VALUE(LocaleRecord, dateTime, 220, LocaleDateTime);
VALUE(LocaleRecord, number, 5928, LocaleNumber);
VALUE(LocaleRecord, currency, 6180, LocaleCurrency);
VALUE(LocaleRecord, percent, 6808, LocalePercent);
VALUE(LocaleRecord, reserved1, 6936, uint8_t[124]);
VALUE(LocaleRecord, measurement, 7060, int32_t);
VALUE(LocaleRecord, identity, 7064, LocaleIdentity);
VALUE(LocaleRecord, items, 7572, LocaleItem[143]);

RECORD(QZLocale, 400);
VALUE(QZLocale, magic, 0, uint8_t[4]);
FIELD(QZLocale, typeName, 8);
FIELD(QZLocale, destroy, 16);
FIELD(QZLocale, owner, 24);
VALUE(QZLocale, nameLength, 32, int32_t);
VALUE(QZLocale, name, 36, char16_t[62]);
FIELD(QZLocale, getLanguage, 160);
FIELD(QZLocale, formatDate, 168);
FIELD(QZLocale, formatTime, 176);
FIELD(QZLocale, formatDouble, 184);
FIELD(QZLocale, formatInt32, 192);
FIELD(QZLocale, formatInt64, 200);
FIELD(QZLocale, formatUInt32, 208);
FIELD(QZLocale, formatUInt64, 216);
FIELD(QZLocale, formatPointer, 224);
FIELD(QZLocale, formatCurrency, 232);
FIELD(QZLocale, formatPercent, 240);
FIELD(QZLocale, parseDateTime, 248);
FIELD(QZLocale, parseDate, 256);
FIELD(QZLocale, parseTime, 264);
FIELD(QZLocale, parseDouble, 272);
FIELD(QZLocale, parseInt32, 280);
FIELD(QZLocale, parseInt64, 288);
FIELD(QZLocale, parseUInt32, 296);
FIELD(QZLocale, parseUInt64, 304);
FIELD(QZLocale, reserved1, 312);
FIELD(QZLocale, reserved2, 320);
FIELD(QZLocale, reserved3, 328);
FIELD(QZLocale, compareText, 336);
FIELD(QZLocale, formatDateTime, 344);
FIELD(QZLocale, getLocaleSection, 352);
FIELD(QZLocale, getLocaleMessage, 360);
FIELD(QZLocale, getLocaleName, 368);
FIELD(QZLocale, record, 376);
FIELD(QZLocale, messageLock, 384);
FIELD(QZLocale, messageTrack, 392);

RECORD(LocaleDatabase, 72);
VALUE(LocaleDatabase, magic, 0, uint8_t[4]);
FIELD(LocaleDatabase, name, 8);
FIELD(LocaleDatabase, destroy, 16);
FIELD(LocaleDatabase, versionQuery, 24);
FIELD(LocaleDatabase, minimumVersionQuery, 32);
FIELD(LocaleDatabase, host, 40);
FIELD(LocaleDatabase, release, 48);
FIELD(LocaleDatabase, pool, 56);
FIELD(LocaleDatabase, loadLocaleRecord, 64);

RECORD(QZNLS, 3280);
VALUE(QZNLS, magic, 0, uint8_t[4]);
FIELD(QZNLS, name, 8);
FIELD(QZNLS, destroy, 16);
FIELD(QZNLS, versionQuery, 24);
FIELD(QZNLS, minimumVersionQuery, 32);
FIELD(QZNLS, host, 40);
FIELD(QZNLS, release, 48);
VALUE(QZNLS, sessionCei, 56, int32_t);
FIELD(QZNLS, estimateOutputLength, 64);
FIELD(QZNLS, conversionNeeded, 72);
FIELD(QZNLS, lookupEncoding, 80);
FIELD(QZNLS, getEncodingDescriptor, 88);
FIELD(QZNLS, createPipeline, 96);
FIELD(QZNLS, createToUtf16Pipeline, 104);
FIELD(QZNLS, createFromUtf16Pipeline, 112);
FIELD(QZNLS, destroyPipeline, 120);
FIELD(QZNLS, convertUtf16ToUtf32, 128);
FIELD(QZNLS, convertUtf32ToUtf16, 136);
FIELD(QZNLS, convertUtf16ToUtf8, 144);
FIELD(QZNLS, convertUtf8ToUtf16, 152);
FIELD(QZNLS, convertUtf16ToUtfEbcdic, 160);
FIELD(QZNLS, convertUtfEbcdicToUtf16, 168);
FIELD(QZNLS, convertUtf16ToUtf32Resumable, 176);
FIELD(QZNLS, convertUtf32ToUtf16Resumable, 184);
FIELD(QZNLS, convertUtf16ToUtf8Resumable, 192);
FIELD(QZNLS, convertUtf8ToUtf16Resumable, 200);
FIELD(QZNLS, convertUtf16ToUtfEbcdicResumable, 208);
FIELD(QZNLS, convertUtfEbcdicToUtf16Resumable, 216);
FIELD(QZNLS, getCharacterRecord, 224);
FIELD(QZNLS, toUpperCharacter, 232);
FIELD(QZNLS, toLowerCharacter, 240);
FIELD(QZNLS, createLocale, 248);
FIELD(QZNLS, allocateLocaleWorkRecord, 256);
FIELD(QZNLS, createDefaultLocale, 264);
FIELD(QZNLS, freeLocaleWorkRecord, 272);
FIELD(QZNLS, resolveDbcsEncoding, 280);
FIELD(QZNLS, describeDbcsEncoding, 288);
FIELD(QZNLS, findLocaleEntry, 296);
VALUE(QZNLS, osCei, 304, int32_t);
VALUE(QZNLS, hostCei, 308, int32_t);
VALUE(QZNLS, hostLocaleNameLength, 312, int32_t);
VALUE(QZNLS, hostLocaleName, 316, char16_t[60]);
VALUE(QZNLS, hostLocaleStatus, 436, uint32_t);
VALUE(QZNLS, hostCeiStatus, 440, uint32_t);
FIELD(QZNLS, createCollator, 448);
FIELD(QZNLS, readKeyHeader, 456);
FIELD(QZNLS, createCollatorFromHeader, 464);
FIELD(QZNLS, compareKeyHeaders, 472);
FIELD(QZNLS, getHostLocaleName, 480);
FIELD(QZNLS, getHostEncoding, 488);
FIELD(QZNLS, createStringManipulator, 496);
FIELD(QZNLS, getBaseEncoding, 504);
FIELD(QZNLS, sharesInvariantCharacters, 512);
FIELD(QZNLS, localeAcceptsEncoding, 520);
FIELD(QZNLS, encodingFromMibEnum, 528);
FIELD(QZNLS, setUserCharacterTables, 536);
FIELD(QZNLS, freeUserCharacterTables, 544);
FIELD(QZNLS, userCharacterTables, 552);
FIELD(QZNLS, makeKeyHeader, 560);
FIELD(QZNLS, getLocaleEncodings, 568);
FIELD(QZNLS, getEncodingLocales, 576);
FIELD(QZNLS, validateEncodedText, 584);
FIELD(QZNLS, pool, 592);
FIELD(QZNLS, pipelineInstances, 600);
FIELD(QZNLS, localeInstances, 608);
FIELD(QZNLS, localeDatabase, 616);
FIELD(QZNLS, multiByteModule, 624);
FIELD(QZNLS, singleByteModule, 632);
FIELD(QZNLS, prebuiltPipelines, 640);
VALUE(QZNLS, shuttingDown, 3264, uint8_t);
FIELD(QZNLS, smInstances, 3272);

RECORD(NlsHostServices, 104);
VALUE(NlsHostServices, size, 0, uint32_t);
FIELD(NlsHostServices, listCreate, 8);
FIELD(NlsHostServices, lockCreate, 16);
FIELD(NlsHostServices, treeSetOption, 24);
FIELD(NlsHostServices, lockAcquire, 32);
FIELD(NlsHostServices, lockRelease, 40);
FIELD(NlsHostServices, treeSearch, 48);
FIELD(NlsHostServices, treeInsert, 56);
FIELD(NlsHostServices, getOption, 64);
FIELD(NlsHostServices, openMessageBundle, 72);
FIELD(NlsHostServices, loadExtension, 80);
FIELD(NlsHostServices, hostCodePage, 88);
FIELD(NlsHostServices, hostLocaleId, 96);

RECORD(HtMutex, 64);
VALUE(HtMutex, opaque, 0, uint64_t[8]);

RECORD(XmChunk, 64);
VALUE(XmChunk, state, 0, uint32_t);
FIELD(XmChunk, start, 8);
FIELD(XmChunk, end, 16);
FIELD(XmChunk, bump, 24);
FIELD(XmChunk, freeChain, 32);
FIELD(XmChunk, owner, 40);
FIELD(XmChunk, next, 48);
FIELD(XmChunk, index, 56);

RECORD(XmPool, 184);
VALUE(XmPool, eyeCatcher, 0, uint8_t[4]);
VALUE(XmPool, kind, 4, int32_t);
VALUE(XmPool, flags, 8, uint32_t);
VALUE(XmPool, lockDepth, 12, int32_t);
FIELD(XmPool, lock, 16);
VALUE(XmPool, owner, 80, uint64_t);
VALUE(XmPool, initialSize, 88, uint32_t);
VALUE(XmPool, extensionSize, 92, uint32_t);
VALUE(XmPool, cellSize, 96, uint32_t);
FIELD(XmPool, chunks, 104);
VALUE(XmPool, creator, 112, uint64_t);
FIELD(XmPool, next, 120);
FIELD(XmPool, previous, 128);
FIELD(XmPool, context, 136);
FIELD(XmPool, index, 144);
VALUE(XmPool, reserved, 152, uint64_t[4]);

RECORD(XmContext, 712);
VALUE(XmContext, initialised, 0, int32_t);
VALUE(XmContext, pageSize, 4, int32_t);
VALUE(XmContext, granule, 8, int32_t);
FIELD(XmContext, pools, 16);
VALUE(XmContext, limit, 24, uint32_t);
VALUE(XmContext, limit2, 28, uint32_t);
VALUE(XmContext, inUse, 32, uint32_t);
VALUE(XmContext, highWater, 36, uint32_t);
FIELD(XmContext, poolHeaders, 40);
FIELD(XmContext, chunkDescriptors, 224);
FIELD(XmContext, supervisor, 408);
FIELD(XmContext, defaultPool, 592);
FIELD(XmContext, lock, 600);
FIELD(XmContext, ranges, 664);
VALUE(XmContext, highMemoryState, 672, int32_t);
VALUE(XmContext, reserved, 680, uint64_t[4]);

RECORD(VeldThreadMemory, 8);
FIELD(VeldThreadMemory, pool, 0);

RECORD(VeldMemoryRecord, 64);
FIELD(VeldMemoryRecord, context, 0);
FIELD(VeldMemoryRecord, services, 8);
FIELD(VeldMemoryRecord, allowAllocation, 16);
FIELD(VeldMemoryRecord, readOption, 24);
VALUE(VeldMemoryRecord, reserved, 32, uint64_t[4]);

RECORD(VeldThreadBlock, 64);
VALUE(VeldThreadBlock, words, 0, uint32_t[15]);
VALUE(VeldThreadBlock, threadKey, 60, uint32_t);

RECORD(VeldThreadRecord, 40);
FIELD(VeldThreadRecord, context, 0);
VALUE(VeldThreadRecord, reserved, 8, uint64_t[4]);

RECORD(VeldFileRecord, 120);
FIELD(VeldFileRecord, files, 0);
FIELD(VeldFileRecord, catalogue, 8);
VALUE(VeldFileRecord, programName, 16, char[68]);
VALUE(VeldFileRecord, reserved, 88, uint64_t[4]);

RECORD(VeldInputVector, 40);
FIELD(VeldInputVector, memory, 0);
FIELD(VeldInputVector, threadBlock, 8);
FIELD(VeldInputVector, unused, 16);
FIELD(VeldInputVector, threads, 24);
FIELD(VeldInputVector, files, 32);
