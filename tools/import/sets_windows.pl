# What perl's Encode makes of the Windows code pages named as arguments: lines "page to CODE UNIT" for every two-byte
# code that is one unit, and "page from UNIT CODE" for every unit from 80 on that has a code.
use strict;
use warnings;
use Encode;

print "# Encode $Encode::VERSION\n";
for my $name (@ARGV) {
  my $page = Encode::find_encoding($name) or die "no $name";
  for my $code (0x8000 .. 0xFFFF) {
    my $bytes = pack 'n', $code;
    my $text = $page->decode($bytes, Encode::FB_QUIET);
    printf "%s to %04X %04X\n", $name, $code, ord $text if !length $bytes && length $text == 1;
  }
  for my $unit (0x80 .. 0xD7FF, 0xE000 .. 0xFFFF) {
    my $text = chr $unit;
    my $bytes = $page->encode($text, Encode::FB_QUIET);
    printf "%s from %04X %s\n", $name, $unit, uc unpack 'H*', $bytes if !length $text;
  }
}
