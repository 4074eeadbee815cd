# Finds the client library of wpa_supplicant's control interface, which comes without a package
# file of any kind. Defines the target WpaClient::WpaClient.
find_path(WpaClient_INCLUDE_DIR wpa_ctrl.h)
find_library(WpaClient_LIBRARY wpa_client)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(WpaClient REQUIRED_VARS WpaClient_LIBRARY WpaClient_INCLUDE_DIR)
mark_as_advanced(WpaClient_INCLUDE_DIR WpaClient_LIBRARY)

if(WpaClient_FOUND AND NOT TARGET WpaClient::WpaClient)
    add_library(WpaClient::WpaClient UNKNOWN IMPORTED)
    set_target_properties(WpaClient::WpaClient PROPERTIES
        IMPORTED_LOCATION ${WpaClient_LIBRARY}
        INTERFACE_INCLUDE_DIRECTORIES ${WpaClient_INCLUDE_DIR})
endif()
