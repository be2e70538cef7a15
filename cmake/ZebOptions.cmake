# Everything every target of the project gets: language level, warnings and Qt defines.
add_library(zeb_options INTERFACE)
target_compile_features(zeb_options INTERFACE cxx_std_20)
target_compile_definitions(zeb_options INTERFACE
  QT_USE_QSTRINGBUILDER
  QT_NO_CAST_FROM_BYTEARRAY
  QT_NO_URL_CAST_FROM_STRING
  QT_NO_KEYWORDS)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  target_compile_options(zeb_options INTERFACE -Wall -Wextra -Wpedantic)
  if(ZEB_WERROR)
    target_compile_options(zeb_options INTERFACE -Werror)
  endif()
  if(ZEB_SANITIZE)
    target_compile_options(zeb_options INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    target_link_options(zeb_options INTERFACE -fsanitize=address,undefined)
  endif()
endif()

# The validated edition reports opening and closing on the audit log channel and keeps its
# settings under a root of its own.
option(ZEB_VALIDATED_EDITION "Build the validated edition" OFF)
if(ZEB_VALIDATED_EDITION)
  target_compile_definitions(zeb_options INTERFACE ZEB_VALIDATED_EDITION)
endif()
