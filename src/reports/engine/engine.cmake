# The report engine. Its files are read by libxml2, which checks them against the schema.
file(READ ${CMAKE_CURRENT_SOURCE_DIR}/engine/report.xsd KINTAR_REPORT_SCHEMA)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS engine/report.xsd)
configure_file(engine/ReportSchemaText.h.in generated/reports/engine/ReportSchemaText.h @ONLY)

kintar_logic(kintar_reports_engine
    SOURCES engine/OpenReport.cpp engine/Pagination.cpp engine/Report.cpp engine/ReportDefinition.cpp
        engine/ReportFile.cpp engine/ReportRows.cpp engine/ReportStatement.cpp
        engine/ReportText.cpp engine/SectionLayout.cpp engine/Template.cpp engine/XmlDocument.cpp
    LINK kintar_server PkgConfig::libxml2
    INCLUDE ${CMAKE_CURRENT_BINARY_DIR}/generated)

# Measuring and painting; needs fonts, but no window.
kintar_adapter(kintar_reports_paint
    SOURCES engine/qt/PagePainter.cpp engine/qt/PdfExport.cpp engine/qt/QtTextMeasure.cpp
    LINK kintar_reports_engine Qt6::Gui)
