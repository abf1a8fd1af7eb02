# The headers of the library that belong to a host: what sensor/ISensorController.h includes, besides the platform's
# contract. tests/public-api compiles a host with these alone, and they are what is installed.
set(SENSORDLL_PUBLIC_HEADERS
    sensor/ISensorController.h
    sensor/KeyCmd.h
    sensor/LanguageDocuments.h
    sensor/config/KeyVal.h
    sensor/config/SysConfig.h
    sensor/diag/Export.h
    technic/RelaxedWord.h)
