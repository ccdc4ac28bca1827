/* What every consumer does with its object, in the C that is C++ too. */
#ifndef CONSUMER_HELLO_H
#define CONSUMER_HELLO_H

#include <stdio.h>
#include <string.h>
#include <veldnls/veldnls.h>

/* Converts a word of EBCDIC 1047, prints it, ends the object and returns the program's exit status. */
static int sayHello(QZNLS* nls) {
  static const char text[] = "\xC8\x85\x93\x93\x96";
  char output[16];
  uint32_t length = 0;
  NlsStatus status = 1;
  TranscodingPipeline* pipeline = nls->createPipeline(nls, U_EBCDIC1047_CE, U_UTF8_CE, NULL, NULL);
  if (pipeline != NULL) {
    status = pipeline->transcode(pipeline, text, sizeof text - 1, output, sizeof output, &length, NULL);
    pipeline->destroy(pipeline);
  }
  nls->destroy(nls);
  if (status != 0 || length != 5 || memcmp(output, "Hello", 5) != 0) return 1;
  puts("Hello");
  return 0;
}

#endif
