// Prints "name byte unit" for every byte that a charset decodes to one UTF-16 unit: java pages_decode.java NAME...
import java.nio.ByteBuffer;
import java.nio.CharBuffer;
import java.nio.charset.CharacterCodingException;
import java.nio.charset.Charset;
import java.nio.charset.CharsetDecoder;
import java.nio.charset.CodingErrorAction;

public class pages_decode {
  public static void main(String[] names) {
    for (String name : names) {
      CharsetDecoder decoder = Charset.forName(name).newDecoder()
          .onMalformedInput(CodingErrorAction.REPORT)
          .onUnmappableCharacter(CodingErrorAction.REPORT);
      for (int value = 0; value < 256; ++value) {
        try {
          CharBuffer text = decoder.decode(ByteBuffer.wrap(new byte[] {(byte) value}));
          if (text.length() == 1) System.out.printf("%s %02X %04X%n", name, value, (int) text.get(0));
        } catch (CharacterCodingException undefined) {
          continue;
        }
      }
    }
  }
}
