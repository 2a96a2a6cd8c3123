# The host's core library: the target OvHost::core, which is there already when a host builds the
# module as a part of itself, comes from the SDK that OVTRACE_HOST_SDK names, or is the stand-in.

include(OvHostFingerprint)

if(TARGET OvHost::core)
  set(host_origin "the OvHost::core of the project around it")
elseif(OVTRACE_HOST_SDK)
  set(host_origin "the host library in ${OVTRACE_HOST_SDK}")
  find_package(OvHost REQUIRED CONFIG PATHS ${OVTRACE_HOST_SDK} NO_DEFAULT_PATH)
else()
  add_subdirectory(host)
endif()

# The command-line host and the tests read polylines back by the stand-in's own operations.
if(host_origin)
  foreach(part TOOLS TESTS BENCH FUZZ)
    if(OVTRACE_BUILD_${part})
      message(FATAL_ERROR "OVTRACE_BUILD_${part} needs the stand-in for the host library, but "
                          "OvTrace is built with ${host_origin}: set OVTRACE_BUILD_${part} to OFF.")
    endif()
  endforeach()
endif()

ovhost_fingerprint(OVTRACE_HOST_FINGERPRINT)
