# The same programs in processes of other locales and time zones, whose decimal points, letters, digits and names must
# not show. The locales are compiled into the build folder; the system's own stay as they are.
find_program(VELDNLS_LOCALEDEF localedef)
if(VELDNLS_SANITIZE)
  return()
endif()
if(NOT VELDNLS_LOCALEDEF OR NOT EXISTS /usr/share/i18n/locales/tr_TR OR NOT EXISTS /usr/share/zoneinfo/Pacific/Apia)
  message(STATUS "No tests under other locales of the process: they need the packages locales and tzdata")
  return()
endif()

set(process_locales_folder ${CMAKE_BINARY_DIR}/process_locales)
set(process_locales_compiled)
# What takes longer and comes near no text of the process is left out.
set(process_locales_programs
  locale_test dates_test locale_object_test numbers_test veld_format_test veld_parse_test)
set(locale_test_filter "*")
set(dates_test_filter
  "*-DatesCalendar.*:DatesMoment.RandomValues:DatesParseItems.EveryNumberItemWithEveryValue:DatesSlots.EveryCapacityInEveryLocale")
set(locale_object_test_filter "*")
set(numbers_test_filter "*")
set(veld_format_test_filter "*")
set(veld_parse_test_filter "*")
# In further zones, all tests of the dates that are done at once.
string(CONCAT quick_dates_filter
  "*-DatesCalendar.EveryDayBothWays:DatesMoment.RandomValues:DatesFormatItems.ExactlyTheseUnitsAreItems"
  ":DatesParseItems.ExactlyTheseUnitsAreItems:DatesParseItems.EveryNumberItemWithEveryValue"
  ":DatesRoundTrip.EveryFormatOfEveryLocale:DatesSlots.EveryCapacityInEveryLocale:DatesSlots.EveryYearAndManyDays")

# Seconds east of Greenwich in July: half an hour off, west and half an hour off, and beyond half a day.
set(process_zones Asia/Kolkata America/St_Johns Pacific/Apia)
set(seconds_east_of_Asia/Kolkata 19800)
set(seconds_east_of_America/St_Johns -9000)
set(seconds_east_of_Pacific/Apia 46800)

# process_locale_test(<name> <program> <filter> <locale> <decimal point> <zone>)
function(process_locale_test name program filter locale point zone)
  add_test(NAME ${name} COMMAND ${program} --gtest_filter=${filter})
  set_tests_properties(${name} PROPERTIES LABELS slow TIMEOUT 600 ENVIRONMENT
    "LOCPATH=${process_locales_folder};LC_ALL=${locale};TZ=${zone};VELDNLS_DECIMAL_POINT=${point};VELDNLS_SECONDS_EAST=${seconds_east_of_${zone}}")
endfunction()

# process_locale(<language> <charset> <decimal point> <time zone>)
#
# All programs in one zone, for names and numbers know none, and the dates in the others, too.
function(process_locale language charset point zone)
  set(name ${language}.${charset})
  set(compiled ${process_locales_folder}/${name})
  add_custom_command(OUTPUT ${compiled}/LC_CTYPE
    COMMAND ${CMAKE_COMMAND} -E make_directory ${process_locales_folder}
    COMMAND ${VELDNLS_LOCALEDEF} --no-archive -i ${language} -f ${charset} ${compiled}
    COMMENT "Compiling the locale ${name}" VERBATIM)
  set(process_locales_compiled ${process_locales_compiled} ${compiled}/LC_CTYPE PARENT_SCOPE)
  foreach(program ${process_locales_programs})
    process_locale_test(${program}_in_${name} ${program} "${${program}_filter}" ${name} ${point} ${zone})
  endforeach()
  foreach(other ${process_zones})
    if(NOT other STREQUAL zone)
      string(REPLACE "/" "_" suffix ${other})
      process_locale_test(dates_test_in_${name}_${suffix} dates_test "${quick_dates_filter}" ${name} ${point} ${other})
    endif()
  endforeach()
endfunction()

process_locale(de_DE UTF-8 "," Asia/Kolkata)
process_locale(de_DE ISO-8859-1 "," America/St_Johns)
process_locale(tr_TR UTF-8 "," Pacific/Apia)
process_locale(tr_TR ISO-8859-9 "," Asia/Kolkata)
process_locale(ar_EG UTF-8 "." America/St_Johns)
process_locale(ar_EG ISO-8859-6 "." Pacific/Apia)

add_custom_target(process_locales ALL DEPENDS ${process_locales_compiled})
