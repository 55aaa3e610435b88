// One step of filling in the identity provider's sign-in form. Answers what it did or found:
// "done", "error", "filled-pass", "filled-user", "captcha-pending" or "waiting".
//
// `force` submits without the challenge's token. Each page is filled in once at most.
(function (user, password, force, identityHost, siteDomain) {
    const isIn = (parent) =>
        location.hostname === parent || location.hostname.endsWith("." + parent);

    if (!isIn(identityHost)) {
        return isIn(siteDomain) && !location.pathname.startsWith("/auth/")
            ? "done"
            : "waiting";
    }

    const visible = (element) => Boolean(element && element.offsetParent);

    // The page holds hidden templates of all messages from the start, with "#{" where names go.
    const messages = document.querySelectorAll(
        "[id^='error-element'], .ulp-input-error-message",
    );
    for (const message of messages) {
        const text = visible(message) ? (message.innerText || message.textContent).trim() : "";
        if (text && !text.includes("#{")) {
            return "error";
        }
    }

    // The challenge's script may not have put its input there yet, so none means no token.
    const token = document.querySelector("input[name=captcha]");
    const isTokenMissing = !token || !token.value;

    // The page's framework watches the native setter; a plain assignment would not reach it.
    function fill(input, text) {
        const setter = Object.getOwnPropertyDescriptor(HTMLInputElement.prototype, "value").set;
        setter.call(input, text);
        input.dispatchEvent(new Event("input", { bubbles: true }));
        input.dispatchEvent(new Event("change", { bubbles: true }));
    }

    function submit() {
        const button = document.querySelector("button[name=action][value=default]");
        if (button) {
            button.click();
        } else if (document.forms[0]) {
            // A field of that name may hide the form's own method.
            HTMLFormElement.prototype.submit.call(document.forms[0]);
        }
    }

    const passwordInput = [...document.querySelectorAll("input[type=password]")].find(visible);
    if (passwordInput && !window.__tdPass) {
        if (isTokenMissing && !force) {
            return "captcha-pending";
        }
        window.__tdPass = true;
        fill(passwordInput, password);
        submit();
        return "filled-pass";
    }

    const userInput = document.getElementById("username");
    if (userInput instanceof HTMLInputElement && visible(userInput) && !window.__tdUser) {
        if (isTokenMissing && !force) {
            return "captcha-pending";
        }
        window.__tdUser = true;
        fill(userInput, user);
        submit();
        return "filled-user";
    }
    return "waiting";
})
