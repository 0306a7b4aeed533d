# What the plug-in tells a host about itself before its code runs. Its name and version are the project's.
set(KESTRIN_CATEGORY "General Plugin")
set(KESTRIN_KIND AEgx)     # a general plug-in
set(KESTRIN_CREATOR FXTC)  # the host's own code
set(KESTRIN_INTERFACE_VERSION 0x00030000)
set(KESTRIN_ENTRY_POINT EntryPointFunc)
set(KESTRIN_RESOURCE_ID 16000)
set(KESTRIN_BUNDLE_IDENTIFIER example.kestrin.plugin)
