"""The events that stories expect, as (category, action, properties)."""

POP_UP = ("DoUninstall", "UninstallPopUp", {"source": "uninstall_action"})
COMPLETED = ("DoUninstall", "UninstallCompleted", {"result": "success"})
FAILED = ("DoUninstall", "UninstallCompleted", {"result": "failure"})


def feedback(action, code, detail="", button=""):
    return ("DoUninstall", action, {"MsgCode": code, "Msgdetail": detail,
                                    "isoption": "1" if button else "0",
                                    "source": "uninstall_action", "RetainActionName": button})


def offer_taken(code, button):
    """A reason with an offer was chosen, and its button pressed."""
    return (feedback("PopUp_FeedbackClick", code, button=button),
            feedback("RetainClick", code, button=button))


def reconfirm(button, delete_all="0"):
    return ("DoUninstall", "UninstallReConfirm", {"ButtonClick": button,
                                                  "is_delete_all": delete_all})


def subscribed(address):
    return ("DoUninstall", "UninstallCompleted",
            {"ButtonClick": "Subscribe", "result": "success", "email": address})


def left(page):
    return ("DoUninstall", "Click_exit", {"pagesource": page, "result": "success"})
