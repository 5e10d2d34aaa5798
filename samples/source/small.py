print("small")
