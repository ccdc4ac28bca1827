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
set(process_locales_programs locale_test dates_test locale_object_test numbers_test)
set(locale_test_filter "*")
set(dates_test_filter
  "*-DatesCalendar.*:DatesMoment.*:DatesParseItems.EveryNumberItemWithEveryValue:DatesSlots.EveryCapacityInEveryLocale")
set(locale_object_test_filter "*")
set(numbers_test_filter
  "*-NumberDifferential.*:IntegerDifferential.*:NumberParsers.DoublesNextToAllKindsOfNumbers")

# process_locale(<language> <charset> <decimal point> <time zone> <seconds east of Greenwich in July>)
function(process_locale language charset point zone east)
  set(name ${language}.${charset})
  set(compiled ${process_locales_folder}/${name})
  add_custom_command(OUTPUT ${compiled}/LC_CTYPE
    COMMAND ${CMAKE_COMMAND} -E make_directory ${process_locales_folder}
    COMMAND ${VELDNLS_LOCALEDEF} --no-archive -i ${language} -f ${charset} ${compiled}
    COMMENT "Compiling the locale ${name}" VERBATIM)
  set(process_locales_compiled ${process_locales_compiled} ${compiled}/LC_CTYPE PARENT_SCOPE)
  foreach(program ${process_locales_programs})
    add_test(NAME ${program}_in_${name} COMMAND ${program} --gtest_filter=${${program}_filter})
    set_tests_properties(${program}_in_${name} PROPERTIES LABELS slow TIMEOUT 600 ENVIRONMENT
      "LOCPATH=${process_locales_folder};LC_ALL=${name};TZ=${zone};VELDNLS_DECIMAL_POINT=${point};VELDNLS_SECONDS_EAST=${east}")
  endforeach()
endfunction()

process_locale(de_DE UTF-8 "," Asia/Kolkata 19800)
process_locale(de_DE ISO-8859-1 "," America/St_Johns -9000)
process_locale(tr_TR UTF-8 "," Pacific/Apia 46800)
process_locale(tr_TR ISO-8859-9 "," Asia/Kolkata 19800)
process_locale(ar_EG UTF-8 "." America/St_Johns -9000)
process_locale(ar_EG ISO-8859-6 "." Pacific/Apia 46800)

add_custom_target(process_locales ALL DEPENDS ${process_locales_compiled})
