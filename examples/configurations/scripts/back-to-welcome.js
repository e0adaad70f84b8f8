// SPDX-License-Identifier: MIT
// After a minute without a touch or a key, the kiosk shows its first page again.
(function() {
    var minute = 60 * 1000;
    var timer = null;

    function waitAgain() {
        clearTimeout(timer);
        timer = setTimeout(function() {
            if (!/\/welcome\.html$/.test(location.pathname))
                history.go(1 - history.length);
        }, minute);
    }

    ['keydown', 'mousedown', 'touchstart'].forEach(function(event) {
        addEventListener(event, waitAgain, true);
    });
    waitAgain();
})();
