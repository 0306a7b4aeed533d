// File, for writing: scripts leave short-lived files and open them with the system's program.
(function (host, global) {
    "use strict";

    var define = Object.defineProperty;

    function File(path) {
        if (!(this instanceof File)) {
            return new File(path);
        }
        define(this, "$path", { value: String(path) });
        define(this, "$isOpen", { value: false, writable: true });
    }

    define(File, "fs", { value: "Unix" });
    define(File.prototype, "fsName", { get: function () { return host.resolvePath(this.$path); } });
    define(File.prototype, "exists", { get: function () { return host.fileExists(this.$path); } });

    File.prototype.open = function (mode) {
        if (mode !== "w") {
            throw new Error("a file can only be opened for writing (\"w\") here");
        }
        if (!host.filesAllowed()) {
            throw new Error("the preferences do not allow scripts to write files");
        }
        this.$isOpen = host.createFile(this.$path);
        return this.$isOpen;
    };
    File.prototype.write = function () {
        var text = "";
        for (var i = 0; i < arguments.length; i++) {
            text += arguments[i];
        }
        return this.$isOpen && host.appendFile(this.$path, text);
    };
    File.prototype.writeln = function () {
        return this.write.apply(this, arguments) && this.write("\n");
    };
    File.prototype.close = function () {
        var wasOpen = this.$isOpen;
        this.$isOpen = false;
        return wasOpen;
    };
    File.prototype.execute = function () { return host.executeFile(this.$path); };
    File.prototype.remove = function () { return host.removeFile(this.$path); };

    global.File = File;
})
