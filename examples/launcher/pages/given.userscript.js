// SPDX-License-Identifier: MIT
// The UserScript of the application "given". It runs in every new document, before its own scripts,
// and finds zarexExt already there.
window.userScriptGreeting = "I ran before " + zarexExt.application() + "'s own scripts";
