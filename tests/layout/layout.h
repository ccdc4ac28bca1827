/* Size of every public record and place of every field, in order, as callers compiled against them rely on it (LP64).
 * Included by one C and one C++ unit. */
#include <stddef.h>

#include "veldnls/veldnls.h"

#define RECORD(type, bytes) STATIC_CHECK(sizeof(type) == (bytes), #type)
#define FIELD(type, field, offset) STATIC_CHECK(offsetof(type, field) == (offset), #type "." #field)

/* clang-format off */

RECORD(NlsHandle, 24);
FIELD(NlsHandle, magic, 0);
FIELD(NlsHandle, name, 8);
FIELD(NlsHandle, destroy, 16);

RECORD(NlsExtension, 56);
FIELD(NlsExtension, magic, 0);
FIELD(NlsExtension, name, 8);
FIELD(NlsExtension, destroy, 16);
FIELD(NlsExtension, versionQuery, 24);
FIELD(NlsExtension, minimumVersionQuery, 32);
FIELD(NlsExtension, host, 40);
FIELD(NlsExtension, release, 48);

RECORD(NlsText60, 124);
FIELD(NlsText60, count, 0);
FIELD(NlsText60, text, 4);

RECORD(NlsByteRange, 2);
FIELD(NlsByteRange, low, 0);
FIELD(NlsByteRange, high, 1);

RECORD(MultiByteProfile, 40);
FIELD(MultiByteProfile, structure, 0);
FIELD(MultiByteProfile, doubleByteSet, 4);
FIELD(MultiByteProfile, singleByteSet, 8);
FIELD(MultiByteProfile, shiftLength, 12);
FIELD(MultiByteProfile, shiftOut, 14);
FIELD(MultiByteProfile, shiftIn, 18);
FIELD(MultiByteProfile, doubleBlank, 22);
FIELD(MultiByteProfile, leadRanges, 24);
FIELD(MultiByteProfile, trailRanges, 32);

RECORD(EncodingDescriptor, 552);
FIELD(EncodingDescriptor, cei, 0);
FIELD(EncodingDescriptor, encodingClass, 4);
FIELD(EncodingDescriptor, flags, 8);
FIELD(EncodingDescriptor, padChar, 12);
FIELD(EncodingDescriptor, substitution, 16);
FIELD(EncodingDescriptor, unitSize, 20);
FIELD(EncodingDescriptor, shortName, 22);
FIELD(EncodingDescriptor, shortNameLength, 32);
FIELD(EncodingDescriptor, name, 36);
FIELD(EncodingDescriptor, nameLength, 64);
FIELD(EncodingDescriptor, description, 68);
FIELD(EncodingDescriptor, descriptionLength, 136);
FIELD(EncodingDescriptor, identifier, 140);
FIELD(EncodingDescriptor, identifierLength, 176);
FIELD(EncodingDescriptor, longDescription, 180);
FIELD(EncodingDescriptor, longDescriptionLength, 264);
FIELD(EncodingDescriptor, ianaName, 268);
FIELD(EncodingDescriptor, ianaNameLength, 332);
FIELD(EncodingDescriptor, javaName, 336);
FIELD(EncodingDescriptor, javaNameLength, 400);
FIELD(EncodingDescriptor, ccsid, 404);
FIELD(EncodingDescriptor, ccsidLength, 416);
FIELD(EncodingDescriptor, codePage, 420);
FIELD(EncodingDescriptor, codePageLength, 432);
FIELD(EncodingDescriptor, profile, 436);
FIELD(EncodingDescriptor, baseCei, 476);
FIELD(EncodingDescriptor, mibEnum, 480);
FIELD(EncodingDescriptor, preferredName, 484);
FIELD(EncodingDescriptor, preferredNameLength, 548);

RECORD(CharacterRecord, 32);
FIELD(CharacterRecord, code, 0);
FIELD(CharacterRecord, category, 4);
FIELD(CharacterRecord, bidiClass, 8);
FIELD(CharacterRecord, combiningClass, 12);
FIELD(CharacterRecord, upper, 16);
FIELD(CharacterRecord, lower, 20);
FIELD(CharacterRecord, decompositionBase, 24);
FIELD(CharacterRecord, decompositionMark, 28);

RECORD(LocaleEncodings, 40);
FIELD(LocaleEncodings, index, 0);
FIELD(LocaleEncodings, primary, 8);
FIELD(LocaleEncodings, primaryCount, 16);
FIELD(LocaleEncodings, secondary, 24);
FIELD(LocaleEncodings, secondaryCount, 32);

RECORD(LocaleNameRow, 176);
FIELD(LocaleNameRow, posixName, 0);
FIELD(LocaleNameRow, posixNameLength, 12);
FIELD(LocaleNameRow, languageCode, 16);
FIELD(LocaleNameRow, languageCodeLength, 20);
FIELD(LocaleNameRow, countryCode, 24);
FIELD(LocaleNameRow, countryCodeLength, 28);
FIELD(LocaleNameRow, longName, 32);
FIELD(LocaleNameRow, longNameLength, 96);
FIELD(LocaleNameRow, languageName, 100);
FIELD(LocaleNameRow, languageNameLength, 164);
FIELD(LocaleNameRow, localeId, 168);
FIELD(LocaleNameRow, windowsLcid, 172);

RECORD(TranscodeOptions, 16);
FIELD(TranscodeOptions, words, 0);

RECORD(TranscodeProgress, 24);
FIELD(TranscodeProgress, flags, 0);
FIELD(TranscodeProgress, consumed, 4);
FIELD(TranscodeProgress, pending, 8);
FIELD(TranscodeProgress, heldCount, 12);
FIELD(TranscodeProgress, held, 16);

RECORD(NlsCodePair, 4);
FIELD(NlsCodePair, key, 0);
FIELD(NlsCodePair, value, 2);

RECORD(CodeOverlay, 16);
FIELD(CodeOverlay, count, 0);
FIELD(CodeOverlay, pairs, 8);

RECORD(NlsPairTable, 16);
FIELD(NlsPairTable, count, 0);
FIELD(NlsPairTable, pairs, 8);

RECORD(PipelineSide, 120);
FIELD(PipelineSide, cei, 0);
FIELD(PipelineSide, peerCei, 4);
FIELD(PipelineSide, swapInput, 8);
FIELD(PipelineSide, swapOutput, 9);
FIELD(PipelineSide, padChar, 12);
FIELD(PipelineSide, unitSize, 16);
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
FIELD(PipelineSide, encodingClass, 104);
FIELD(PipelineSide, substitution, 108);
FIELD(PipelineSide, options, 112);

RECORD(TranscodingPipeline, 328);
FIELD(TranscodingPipeline, magic, 0);
FIELD(TranscodingPipeline, name, 8);
FIELD(TranscodingPipeline, destroy, 16);
FIELD(TranscodingPipeline, nls, 24);
FIELD(TranscodingPipeline, transcode, 32);
FIELD(TranscodingPipeline, transcodeResumable, 40);
FIELD(TranscodingPipeline, sourceCei, 48);
FIELD(TranscodingPipeline, targetCei, 52);
FIELD(TranscodingPipeline, twoStage, 56);
FIELD(TranscodingPipeline, source, 64);
FIELD(TranscodingPipeline, target, 184);
FIELD(TranscodingPipeline, flags, 304);
FIELD(TranscodingPipeline, options, 308);

RECORD(UserCharacterTable, 360);
FIELD(UserCharacterTable, heading, 0);
FIELD(UserCharacterTable, subheading, 24);
FIELD(UserCharacterTable, codeA, 48);
FIELD(UserCharacterTable, codeB, 50);
FIELD(UserCharacterTable, columnCount, 52);
FIELD(UserCharacterTable, characterCount, 56);
FIELD(UserCharacterTable, columnBytes, 60);
FIELD(UserCharacterTable, columns, 64);
FIELD(UserCharacterTable, next, 256);
FIELD(UserCharacterTable, ceis, 264);

RECORD(CodePageModule, 64);
FIELD(CodePageModule, magic, 0);
FIELD(CodePageModule, name, 8);
FIELD(CodePageModule, destroy, 16);
FIELD(CodePageModule, versionQuery, 24);
FIELD(CodePageModule, minimumVersionQuery, 32);
FIELD(CodePageModule, host, 40);
FIELD(CodePageModule, release, 48);
FIELD(CodePageModule, pool, 56);

RECORD(SingleByteModule, 96);
FIELD(SingleByteModule, magic, 0);
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
FIELD(MultiByteModule, magic, 0);
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
FIELD(Gb18030Module, magic, 0);
FIELD(Gb18030Module, name, 8);
FIELD(Gb18030Module, destroy, 16);
FIELD(Gb18030Module, versionQuery, 24);
FIELD(Gb18030Module, minimumVersionQuery, 32);
FIELD(Gb18030Module, host, 40);
FIELD(Gb18030Module, release, 48);
FIELD(Gb18030Module, pool, 56);
FIELD(Gb18030Module, fromUnicode, 64);
FIELD(Gb18030Module, toUnicode, 72);

RECORD(LocaleDatabase, 72);
FIELD(LocaleDatabase, magic, 0);
FIELD(LocaleDatabase, name, 8);
FIELD(LocaleDatabase, destroy, 16);
FIELD(LocaleDatabase, versionQuery, 24);
FIELD(LocaleDatabase, minimumVersionQuery, 32);
FIELD(LocaleDatabase, host, 40);
FIELD(LocaleDatabase, release, 48);
FIELD(LocaleDatabase, pool, 56);
FIELD(LocaleDatabase, loadLocaleRecord, 64);

RECORD(QZNLS, 3280);
FIELD(QZNLS, magic, 0);
FIELD(QZNLS, name, 8);
FIELD(QZNLS, destroy, 16);
FIELD(QZNLS, versionQuery, 24);
FIELD(QZNLS, minimumVersionQuery, 32);
FIELD(QZNLS, host, 40);
FIELD(QZNLS, release, 48);
FIELD(QZNLS, sessionCei, 56);
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
FIELD(QZNLS, osCei, 304);
FIELD(QZNLS, hostCei, 308);
FIELD(QZNLS, hostLocaleNameLength, 312);
FIELD(QZNLS, hostLocaleName, 316);
FIELD(QZNLS, hostLocaleStatus, 436);
FIELD(QZNLS, hostCeiStatus, 440);
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
FIELD(QZNLS, shuttingDown, 3264);
FIELD(QZNLS, smInstances, 3272);

RECORD(NlsHostServices, 104);
FIELD(NlsHostServices, size, 0);
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
FIELD(HtMutex, opaque, 0);

RECORD(XmChunk, 64);
FIELD(XmChunk, state, 0);
FIELD(XmChunk, start, 8);
FIELD(XmChunk, end, 16);
FIELD(XmChunk, bump, 24);
FIELD(XmChunk, freeChain, 32);
FIELD(XmChunk, owner, 40);
FIELD(XmChunk, next, 48);
FIELD(XmChunk, index, 56);

RECORD(XmPool, 184);
FIELD(XmPool, eyeCatcher, 0);
FIELD(XmPool, kind, 4);
FIELD(XmPool, flags, 8);
FIELD(XmPool, lockDepth, 12);
FIELD(XmPool, lock, 16);
FIELD(XmPool, owner, 80);
FIELD(XmPool, initialSize, 88);
FIELD(XmPool, extensionSize, 92);
FIELD(XmPool, cellSize, 96);
FIELD(XmPool, chunks, 104);
FIELD(XmPool, creator, 112);
FIELD(XmPool, next, 120);
FIELD(XmPool, previous, 128);
FIELD(XmPool, context, 136);
FIELD(XmPool, index, 144);
FIELD(XmPool, reserved, 152);

RECORD(XmContext, 712);
FIELD(XmContext, initialised, 0);
FIELD(XmContext, pageSize, 4);
FIELD(XmContext, granule, 8);
FIELD(XmContext, pools, 16);
FIELD(XmContext, limit, 24);
FIELD(XmContext, limit2, 28);
FIELD(XmContext, inUse, 32);
FIELD(XmContext, highWater, 36);
FIELD(XmContext, poolHeaders, 40);
FIELD(XmContext, chunkDescriptors, 224);
FIELD(XmContext, supervisor, 408);
FIELD(XmContext, defaultPool, 592);
FIELD(XmContext, lock, 600);
FIELD(XmContext, ranges, 664);
FIELD(XmContext, highMemoryState, 672);
FIELD(XmContext, reserved, 680);

RECORD(VeldThreadMemory, 8);
FIELD(VeldThreadMemory, pool, 0);

RECORD(VeldMemoryRecord, 64);
FIELD(VeldMemoryRecord, context, 0);
FIELD(VeldMemoryRecord, services, 8);
FIELD(VeldMemoryRecord, reserved, 32);

RECORD(VeldThreadBlock, 64);
FIELD(VeldThreadBlock, words, 0);
FIELD(VeldThreadBlock, threadKey, 60);

RECORD(VeldThreadRecord, 40);
FIELD(VeldThreadRecord, context, 0);
FIELD(VeldThreadRecord, reserved, 8);

RECORD(VeldFileRecord, 120);
FIELD(VeldFileRecord, files, 0);
FIELD(VeldFileRecord, catalogue, 8);
FIELD(VeldFileRecord, programName, 16);
FIELD(VeldFileRecord, reserved, 88);

RECORD(VeldInputVector, 40);
FIELD(VeldInputVector, memory, 0);
FIELD(VeldInputVector, threadBlock, 8);
FIELD(VeldInputVector, unused, 16);
FIELD(VeldInputVector, threads, 24);
FIELD(VeldInputVector, files, 32);
