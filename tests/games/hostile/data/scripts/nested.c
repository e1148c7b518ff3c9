void main(){
	int i;
	for(i = 0; i < 2000; i = i + 1){
		setglobalvar("text", getglobalvar("text") + "0123456789");
	}
}
