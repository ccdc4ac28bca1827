// The names that the loader knows. A name without a constructor answers null.
#include "core/qznlsstub.h"
#include "locale/qznlsldb.h"
#include "modules/qznlsgb/qznlsgb.h"
#include "modules/qznlsmb/qznlsmb.h"
#include "modules/qznlssb/qznlssb.h"

namespace veldnls {

const ExtensionRow extensionRows[extensionRowCount] = {
    {u"qznlsldb", 8, createLocaleDatabase},
    {u"qznlsgb", 7, createGb18030Module},
    {u"qznlsmb", 7, createMultiByteModule},
    {u"qznlssb", 7, createSingleByteModule},
    {u"lceda", 5, nullptr},
    {u"lceen", 5, nullptr},
    {u"lcees", 5, nullptr},
    {u"lcefi", 5, nullptr},
    {u"lceit", 5, nullptr},
    {u"lceno", 5, nullptr},
    {u"lcepl", 5, nullptr},
    {u"lcesv", 5, nullptr},
    {u"lcstb", 5, nullptr},
    {u"lcebin", 6, nullptr},
};

}  // namespace veldnls
