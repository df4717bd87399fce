def text(results):
    return ""
