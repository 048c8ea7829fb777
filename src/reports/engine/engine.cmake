# The report engine. Its files are read by libxml2, which checks them against the schema.
pkg_check_modules(libxml2 REQUIRED IMPORTED_TARGET libxml-2.0)
file(READ ${CMAKE_CURRENT_SOURCE_DIR}/engine/report.xsd KINTAR_REPORT_SCHEMA)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS engine/report.xsd)
configure_file(engine/ReportSchemaText.h.in generated/reports/engine/ReportSchemaText.h @ONLY)

kintar_logic(kintar_reports_engine
    SOURCES engine/OpenReport.cpp engine/Pagination.cpp engine/Report.cpp engine/ReportDefinition.cpp
        engine/ReportFile.cpp engine/ReportRows.cpp engine/ReportStatement.cpp
        engine/ReportText.cpp engine/SectionLayout.cpp engine/Template.cpp engine/XmlDocument.cpp
    LINK kintar_server)
target_link_libraries(kintar_reports_engine PRIVATE PkgConfig::libxml2)
target_include_directories(kintar_reports_engine PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/generated)

# Measuring and painting; needs fonts, but no window.
add_library(kintar_reports_paint STATIC
    engine/qt/PagePainter.cpp engine/qt/PdfExport.cpp engine/qt/QtTextMeasure.cpp)
target_compile_definitions(kintar_reports_paint PUBLIC QT_NO_CAST_FROM_ASCII QT_NO_KEYWORDS)
target_link_libraries(kintar_reports_paint PUBLIC kintar_reports_engine Qt6::Gui)
