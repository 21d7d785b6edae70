# PictureBox's own drawing against Qt's, offscreen. Included from tests/.
find_package(Qt6 REQUIRED COMPONENTS Core Gui Widgets Test)
add_executable(test_picturebox ${CMAKE_CURRENT_LIST_DIR}/picturebox_test.cpp)
set_target_properties(test_picturebox PROPERTIES AUTOMOC ON)
target_link_libraries(test_picturebox PRIVATE ombrevale_workbench ombrevale_test_support Qt6::Test ombrevale_warnings)
add_test(NAME picturebox COMMAND test_picturebox)
set_tests_properties(picturebox PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
