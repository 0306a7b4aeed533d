#include "Preferences.h"

#include "Kestrin_Strings.h"

A_Err Preferences::open() {
    return suites_.PersistentDataSuite3()->AEGP_GetApplicationBlob(&store_);
}

A_Err Preferences::readFlag(int key, A_Boolean* flag) {
    *flag = 0;
    return suites_.PersistentDataSuite3()->AEGP_GetData(store_, GetStringPtr(StrID_Section), GetStringPtr(key),
                                                        sizeof *flag, nullptr, flag);
}

A_Err Preferences::readNumber(int key, A_long* number) {
    return suites_.PersistentDataSuite3()->AEGP_GetLong(store_, GetStringPtr(StrID_Section), GetStringPtr(key),
                                                        0, number);
}

A_Err Preferences::remove(int key) {
    return suites_.PersistentDataSuite3()->AEGP_DeleteEntry(store_, GetStringPtr(StrID_Section),
                                                            GetStringPtr(key));
}
