// Takes away what is newer than the third edition of the language, which is what the real host's engine knows: a
// script that runs here runs there. Runs last; the rest of the library has kept what it needs for itself.
(function (host, global) {
    "use strict";

    var KEPT = {
        Object: "length name prototype",
        Function: "length name prototype",
        Array: "length name prototype",
        String: "length name prototype fromCharCode",
        Number: "length name prototype MAX_VALUE MIN_VALUE NaN NEGATIVE_INFINITY POSITIVE_INFINITY",
        Date: "length name prototype parse UTC"
    };
    var KEPT_IN_PROTOTYPE = {
        Object: "constructor hasOwnProperty isPrototypeOf propertyIsEnumerable toLocaleString toString valueOf",
        Function: "apply call constructor length name toString",
        Array: "concat constructor join length pop push reverse shift slice sort splice toLocaleString toString " +
            "unshift",
        String: "charAt charCodeAt concat constructor indexOf lastIndexOf length localeCompare match replace " +
            "search slice split substr substring toLocaleLowerCase toLocaleUpperCase toLowerCase toString " +
            "toUpperCase valueOf"
    };
    var GLOBALS = "Array Boolean Date Error EvalError Function Infinity Math NaN Number Object RangeError " +
        "ReferenceError RegExp String SyntaxError TypeError URIError decodeURI decodeURIComponent encodeURI " +
        "encodeURIComponent escape eval isFinite isNaN parseFloat parseInt undefined unescape " +
        "app alert $ File Window";

    var namesOf = Object.getOwnPropertyNames;
    var describe = Object.getOwnPropertyDescriptor;

    function keepOnly(object, kept) {
        var names = namesOf(object);
        for (var i = 0; i < names.length; i++) {
            if ((" " + kept + " ").indexOf(" " + names[i] + " ") < 0 && describe(object, names[i]).configurable) {
                delete object[names[i]];
            }
        }
    }

    for (var name in KEPT) {
        keepOnly(global[name], KEPT[name]);
    }
    for (name in KEPT_IN_PROTOTYPE) {
        keepOnly(global[name].prototype, KEPT_IN_PROTOTYPE[name]);
    }
    keepOnly(global, GLOBALS);
})
