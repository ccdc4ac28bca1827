// Agreement with iconv on well-formed text: all code points among UTF-8, UTF-16 and UTF-32 in both byte orders. Left
// out are the pairs of utf-16be to utf-8 and plane 16 of utf-8 to utf-16, which the library treats in its own way.
#include <iconv.h>

#include "reference/reference.h"

namespace transcode_test {

namespace {

struct Named {
  TextForm form;
  const char* name;
};

constexpr Named forms[] = {
    {textForms[0], "UTF-8"},    {textForms[2], "UTF-16LE"}, {textForms[3], "UTF-16BE"},
    {textForms[4], "UTF-32LE"}, {textForms[5], "UTF-32BE"},
};

Bytes byIconv(const char* from, const char* to, const Bytes& text) {
  const iconv_t converter = iconv_open(to, from);
  Bytes output(4 * text.size());
  Bytes copy = text;
  char* in = reinterpret_cast<char*>(copy.data());
  char* out = reinterpret_cast<char*>(output.data());
  size_t inLeft = copy.size();
  size_t outLeft = output.size();
  EXPECT_NE(iconv(converter, &in, &inLeft, &out, &outLeft), static_cast<size_t>(-1)) << from << " to " << to;
  iconv_close(converter);
  output.resize(output.size() - outLeft);
  return output;
}

TEST(Iconv, AllCodePoints) {
  constexpr size_t blockSize = 2048;
  for (const Named& source : forms) {
    for (const Named& target : forms) {
      const Pipeline pipeline(source.form.cei, target.form.cei);
      const bool swappedToUtf8 =
          source.form.bigEndian && source.form.form == Form::utf16 && target.form.form == Form::utf8;
      const bool utf8Decoder =
          source.form.form == Form::utf8 && (target.form.form == Form::utf16 || target.form.form == Form::utf8);
      const char32_t end = swappedToUtf8 ? 0x10000 : utf8Decoder ? 0x100000 : 0x110000;
      std::u32string block;
      for (char32_t c = 0; c < end; ++c) {
        if (c < 0xD800 || c > 0xDFFF) block.push_back(c);
        if (block.size() < blockSize && c + 1 < end) continue;
        const Bytes input = byIconv("UTF-32LE", source.name, utf32(block));
        const Outcome outcome = run(pipeline, input, 4 * block.size());
        ASSERT_EQ(outcome.status, 0u) << source.name << " to " << target.name << " up to " << uint32_t{c};
        ASSERT_EQ(outcome.bytes, byIconv(source.name, target.name, input))
            << source.name << " to " << target.name << " up to " << uint32_t{c};
        block.clear();
      }
    }
  }
}

}  // namespace

}  // namespace transcode_test
